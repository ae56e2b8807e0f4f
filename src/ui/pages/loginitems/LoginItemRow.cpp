#include "ui/pages/loginitems/LoginItemRow.h"

#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/widgets/ElidedLabel.h"
#include "ui/widgets/SymbolView.h"
#include "ui/widgets/TagLabel.h"

#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace dorvik {

namespace {

constexpr int iconSize = 28;

// The owner's icon as the desktop draws it: a name from the icon theme, or an image's path.
// Application bundles bring no icon this program can read, so they get none here.
QWidget* ownerIcon(const LaunchItem& item) {
    if (item.icon) {
        const QString name = nameText(*item.icon);
        const QIcon icon = name.startsWith('/') ? QIcon(name) : QIcon::fromTheme(name);
        if (!icon.isNull()) {
            auto* label = new QLabel;
            label->setPixmap(icon.pixmap(iconSize, iconSize));
            label->setFixedSize(iconSize, iconSize);
            return label;
        }
    }
    auto* symbol = new SymbolView(item.ownerPath ? "app.badge.fill" : "gearshape.fill", iconSize);
    symbol->setTint(Style::Tint::secondary);
    return symbol;
}

} // namespace

LoginItemRow::LoginItemRow(const LaunchItem& item, bool busy, std::function<void()> reveal,
                           std::function<void()> remove, QWidget* parent)
    : QWidget(parent), item_(item) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, Style::gap, 0, Style::gap);
    row->setSpacing(Style::gap + 4);
    row->addWidget(ownerIcon(item));

    auto* names = new QVBoxLayout;
    names->setSpacing(2);
    auto* title = new QHBoxLayout;
    title->setSpacing(Style::gap);
    // Long names give way before the badges and buttons do.
    name_ = new ElidedLabel;
    name_->setText(nameText(shownName(item)));
    title->addWidget(name_, 1);
    const auto addBadge = [&](const QString& text, Style::Tint tint) {
        badges_ << text;
        title->addWidget(new TagLabel(text, tint));
    };
    if (item.isOrphan) {
        addBadge(tr("App removed"), Style::Tint::warning);
    }
    if (item.runAtLoad) {
        addBadge(tr("At login"), Style::Tint::accent);
    }
    if (item.keepAlive) {
        addBadge(tr("Always running"), Style::Tint::accent);
    }
    if (item.isTurnedOff) {
        addBadge(tr("Turned off"), Style::Tint::secondary);
    }
    names->addLayout(title);
    const bool labelIsName = item.label == shownName(item);
    const std::string secondary = labelIsName && item.program ? *item.program : item.label;
    auto* detail = new ElidedLabel;
    Style::setTextRole(detail, Style::TextRole::tertiary);
    detail->setText(nameText(secondary));
    names->addWidget(detail);
    row->addLayout(names, 1);

    reveal_ = new QPushButton(shownText("Show in Finder"));
    connect(reveal_, &QPushButton::clicked, this, [reveal = std::move(reveal)] { reveal(); });
    row->addWidget(reveal_);
    if (isRemovable(item)) {
        // The ellipsis warns that the administrator's password is asked for next.
        remove_ =
            new QPushButton(info(item.scope).needsAdministrator ? tr("Remove…") : tr("Remove"));
        Style::setDestructive(remove_);
        remove_->setEnabled(!busy);
        connect(remove_, &QPushButton::clicked, this, [remove = std::move(remove)] { remove(); });
        row->addWidget(remove_);
    }
}

} // namespace dorvik
