#include "ui/Symbols.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QStandardPaths>

#include <array>

namespace dorvik::Symbols {

namespace {

// Adwaita's symbolic icons: one colour, one stroke weight, the closest to the symbols' own look.
constexpr const char* iconTheme = "Adwaita";

constexpr auto symbolIcons = std::to_array<SymbolIcon>({
    // sections
    {"wand.and.stars", "star-new-symbolic"},
    {"chart.pie.fill", "x-office-presentation-symbolic"},
    {"chart.line.uptrend.xyaxis", "network-cellular-signal-excellent-symbolic"},
    {"folder.fill", "folder-symbolic"},
    {"folder", "folder-symbolic"},
    {"square.stack.3d.up.fill", "view-paged-symbolic"},
    {"arrow.up.left.and.arrow.down.right", "view-fullscreen-symbolic"},
    {"gearshape.2.fill", "system-run-symbolic"},
    {"icloud.fill", "weather-overcast-symbolic"},
    {"square.grid.2x2.fill", "view-grid-symbolic"},
    {"puzzlepiece.extension.fill", "application-x-addon-symbolic"},
    {"power.circle.fill", "system-shutdown-symbolic"},
    {"sparkles", "starred-symbolic"},
    {"hammer.fill", "applications-engineering-symbolic"},
    {"doc.on.doc.fill", "edit-copy-symbolic"},
    {"clock.arrow.circlepath", "document-open-recent-symbolic"},
    // kinds and categories
    {"doc.text.fill", "x-office-document-symbolic"},
    {"photo.fill", "image-x-generic-symbolic"},
    {"film.fill", "video-x-generic-symbolic"},
    {"waveform", "multimedia-volume-control-symbolic"},
    {"archivebox.fill", "system-file-manager-symbolic"},
    {"opticaldiscdrive.fill", "media-optical-symbolic"},
    {"chevron.left.forwardslash.chevron.right", "utilities-terminal-symbolic"},
    {"app.fill", "application-x-executable-symbolic"},
    {"questionmark.square.dashed", "dialog-question-symbolic"},
    {"photo.on.rectangle.angled", "folder-pictures-symbolic"},
    {"film.stack.fill", "applications-multimedia-symbolic"},
    {"music.note", "audio-x-generic-symbolic"},
    {"shippingbox.fill", "package-x-generic-symbolic"},
    {"tray.full.fill", "drive-multidisk-symbolic"},
    {"trash.fill", "user-trash-symbolic"},
    {"ellipsis.circle.fill", "view-more-horizontal-symbolic"},
    // risks
    {"checkmark.shield.fill", "security-high-symbolic"},
    {"exclamationmark.triangle.fill", "dialog-warning-symbolic"},
    {"lock.fill", "changes-prevent-symbolic"},
    // the shell, sheets and toasts
    {"internaldrive.fill", "drive-harddisk-symbolic"},
    {"internaldrive", "drive-harddisk-symbolic"},
    {"externaldrive.fill.badge.checkmark", "drive-harddisk-system-symbolic"},
    {"arrow.clockwise", "view-refresh-symbolic"},
    {"lock.shield.fill", "security-high-symbolic"},
    {"checkmark.circle.fill", "emblem-default-symbolic"},
    {"trash.circle.fill", "user-trash-symbolic"},
    {"xmark.octagon.fill", "dialog-error-symbolic"},
    {"xmark.circle.fill", "edit-clear-symbolic"},
    {"xmark", "window-close-symbolic"},
    {"arrow.uturn.backward.circle.fill", "edit-undo-symbolic"},
    // pages
    {"info.circle", "help-about-symbolic"},
    {"magnifyingglass", "system-search-symbolic"},
    {"link", "insert-link-symbolic"},
    {"paperclip", "mail-attachment-symbolic"},
    {"iphone", "phone-apple-iphone-symbolic"},
    {"arrow.down.circle.fill", "folder-download-symbolic"},
    {"arrow.down.circle", "software-update-available-symbolic"},
    {"icloud.and.arrow.down.fill", "folder-download-symbolic"},
    {"icloud.slash", "network-offline-symbolic"},
    {"checkmark.icloud", "emblem-ok-symbolic"},
    {"arrow.up.to.line.compact", "go-top-symbolic"},
    {"app.badge.fill", "view-app-grid-symbolic"},
    {"doc.text", "text-x-generic-symbolic"},
    {"doc.on.doc", "edit-copy-symbolic"},
    {"gearshape.fill", "emblem-system-symbolic"},
    {"gearshape", "emblem-system-symbolic"},
    {"calendar.badge.clock", "appointment-soon-symbolic"},
    {"clock.badge.exclamationmark.fill", "appointment-missed-symbolic"},
    {"checkmark.seal.fill", "emblem-ok-symbolic"},
    {"hourglass", "alarm-symbolic"},
    {"eye.slash", "view-conceal-symbolic"},
    {"plus", "list-add-symbolic"},
    {"minus", "list-remove-symbolic"},
    {"square.and.arrow.up", "send-to-symbolic"},
    {"list.bullet", "view-list-bullet-symbolic"},
    {"chart.pie", "x-office-presentation-symbolic"},
    {"chevron.left", "go-previous-symbolic"},
    {"chevron.compact.right", "go-next-symbolic"},
    {"chevron.down", "go-down-symbolic"},
    {"arrow.up", "go-up-symbolic"},
    {"arrow.up.right", "go-jump-symbolic"},
    {"arrow.up.forward.app", "folder-open-symbolic"},
    {"arrow.down.right", "go-down-symbolic"},
    {"arrow.left.arrow.right", "object-flip-horizontal-symbolic"},
    {"equal.circle", "view-continuous-symbolic"},
    {"apple.logo", "computer-symbolic"},
    {"memorychip", "media-flash-symbolic"},
    {"brain", "applications-science-symbolic"},
    {"shippingbox", "package-x-generic-symbolic"},
    {"calendar", "x-office-calendar-symbolic"},
    {"circle.fill", "media-record-symbolic"},
});

// Draws a theme icon in one colour: the icon's own shape as a mask, filled with the tint.
class TintedIconEngine : public QIconEngine {
public:
    TintedIconEngine(QIcon source, Style::Tint tint, QColor colour)
        : source_(std::move(source)), tint_(tint), colour_(std::move(colour)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
               QIcon::State state) override {
        const qreal ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
        QPixmap drawn = scaledPixmap(rect.size(), mode, state, ratio);
        painter->drawPixmap(rect, drawn);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        return scaledPixmap(size, mode, state, 1.0);
    }

    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state,
                         qreal scale) override {
        const QSize pixels = size * scale;
        QPixmap result = source_.pixmap(pixels, QIcon::Normal, state);
        if (result.isNull()) {
            return result;
        }
        QPainter painter(&result);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(result.rect(), colour(mode));
        painter.end();
        result.setDevicePixelRatio(scale);
        return result;
    }

    QIconEngine* clone() const override { return new TintedIconEngine(source_, tint_, colour_); }

    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) override {
        return source_.availableSizes(mode, state);
    }

    QString iconName() override { return source_.name(); }

    bool isNull() override { return source_.isNull(); }

private:
    QColor colour(QIcon::Mode mode) const {
        const QPalette palette = QGuiApplication::palette();
        switch (mode) {
        case QIcon::Disabled:
            return palette.color(QPalette::Disabled, QPalette::WindowText);
        case QIcon::Selected:
            return palette.color(QPalette::HighlightedText);
        case QIcon::Normal:
        case QIcon::Active:
            break;
        }
        return colour_.isValid() ? colour_ : Style::tint(tint_, palette);
    }

    QIcon source_;
    Style::Tint tint_;
    QColor colour_; // when valid, instead of the tint
};

} // namespace

std::span<const SymbolIcon> table() {
    return symbolIcons;
}

QString themeIconName(std::string_view symbol) {
    for (const SymbolIcon& entry : symbolIcons) {
        if (entry.symbol == symbol) {
            return QString::fromLatin1(entry.themeIcon.data(),
                                       static_cast<qsizetype>(entry.themeIcon.size()));
        }
    }
    return {};
}

void useIconTheme() {
    // Without a desktop's platform theme (offscreen, a bare X server) Qt searches only its own
    // resources; the freedesktop folders are added here so that the theme is found anywhere.
    QStringList paths = QIcon::themeSearchPaths();
    const QStringList found =
        QStandardPaths::locateAll(QStandardPaths::GenericDataLocation, QStringLiteral("icons"),
                                  QStandardPaths::LocateDirectory);
    for (const QString& folder : found) {
        if (!paths.contains(folder)) {
            paths.append(folder);
        }
    }
    QIcon::setThemeSearchPaths(paths);
    QIcon::setThemeName(QString::fromLatin1(iconTheme));
    QIcon::setFallbackThemeName(QStringLiteral("hicolor"));
}

namespace {

QIcon tintedIcon(std::string_view symbol, Style::Tint tint, const QColor& colour) {
    const QString name = themeIconName(symbol);
    if (name.isEmpty()) {
        return {};
    }
    return QIcon(new TintedIconEngine(QIcon::fromTheme(name), tint, colour));
}

} // namespace

QIcon icon(std::string_view symbol, Style::Tint tint) {
    return tintedIcon(symbol, tint, QColor());
}

QIcon icon(std::string_view symbol, const QColor& colour) {
    return tintedIcon(symbol, Style::Tint::text, colour);
}

} // namespace dorvik::Symbols
