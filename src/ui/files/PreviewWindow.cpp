#include "ui/files/PreviewWindow.h"

#include "system/TextForms.h"
#include "ui/QtText.h"
#include "ui/Style.h"

#include <QFile>
#include <QFontDatabase>
#include <QImageReader>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QStackedLayout>
#include <QVBoxLayout>

#include <optional>

namespace dorvik {

namespace {

// Enough of a text to see what it is, little enough to read at once from any disk.
constexpr qint64 textPreviewBytes = 64 * 1024;

// Text is what decodes as UTF-8 and holds no NUL byte.
std::optional<QString> textStart(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    const QByteArray bytes = file.read(textPreviewBytes);
    if (bytes.contains('\0')) {
        return std::nullopt;
    }
    QString text = QString::fromUtf8(bytes);
    // A cut through a character at the end of the read is no sign of binary data.
    const qsizetype replaced = text.count(QChar::ReplacementCharacter);
    if (replaced > 1 || (replaced == 1 && !text.endsWith(QChar::ReplacementCharacter))) {
        return std::nullopt;
    }
    return text;
}

} // namespace

PreviewWindow::PreviewWindow(QWidget* parent) : QDialog(parent) {
    setWindowTitle(tr("Quick Look"));
    resize(640, 480);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Style::cardPadding, Style::cardPadding, Style::cardPadding,
                               Style::cardPadding);
    stack_ = new QStackedLayout;
    pictureLabel_ = new QLabel;
    pictureLabel_->setAlignment(Qt::AlignCenter);
    pictureLabel_->setMinimumSize(1, 1);
    text_ = new QPlainTextEdit;
    text_->setReadOnly(true);
    text_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    facts_ = Style::label(QString(), Style::TextRole::body);
    facts_->setAlignment(Qt::AlignCenter);
    facts_->setWordWrap(true);
    stack_->addWidget(pictureLabel_);
    stack_->addWidget(text_);
    stack_->addWidget(facts_);
    layout->addLayout(stack_, 1);
    caption_ = Style::label(QString(), Style::TextRole::caption);
    caption_->setAlignment(Qt::AlignCenter);
    layout->addWidget(caption_);
}

void PreviewWindow::showNode(const FileNodePtr& node) {
    node_ = node;
    if (node == nullptr) {
        return;
    }
    const QString path = QFile::decodeName(QByteArray::fromStdString(node->path()));
    setWindowTitle(qtText(node->name));
    caption_->setText(qtText(node->name) + QStringLiteral(" · ") +
                      qtText(TextForms::size(node->size)));
    picture_ = QImage();
    if (!node->isDirectory) {
        QImageReader reader(path);
        reader.setAutoTransform(true);
        picture_ = reader.read();
    }
    if (!picture_.isNull()) {
        stack_->setCurrentWidget(pictureLabel_);
        showPicture();
    } else if (const auto text = node->isDirectory ? std::nullopt : textStart(path)) {
        text_->setPlainText(*text);
        stack_->setCurrentWidget(text_);
    } else {
        facts_->setText(QStringLiteral("<b>%1</b><br><br>%2<br>%3 · %4<br>%5 %6")
                            .arg(qtText(node->name).toHtmlEscaped(),
                                 qtText(info(node->kind).displayName).toHtmlEscaped(),
                                 qtText(TextForms::size(node->size)),
                                 qtText(info(node->bucket).displayName).toHtmlEscaped(),
                                 tr("Modified"),
                                 qtText(TextForms::abbreviatedDate(node->modified))));
        stack_->setCurrentWidget(facts_);
    }
    show();
    raise();
}

PreviewWindow::Showing PreviewWindow::showing() const {
    if (stack_->currentWidget() == pictureLabel_) {
        return Showing::picture;
    }
    return stack_->currentWidget() == text_ ? Showing::text : Showing::facts;
}

void PreviewWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space) {
        close();
        return;
    }
    QDialog::keyPressEvent(event);
}

void PreviewWindow::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    showPicture();
}

void PreviewWindow::showPicture() {
    if (picture_.isNull()) {
        return;
    }
    const QSize room = pictureLabel_->size() * devicePixelRatioF();
    QPixmap shown = QPixmap::fromImage(
        picture_.width() > room.width() || picture_.height() > room.height()
            ? picture_.scaled(room, Qt::KeepAspectRatio, Qt::SmoothTransformation)
            : picture_);
    shown.setDevicePixelRatio(devicePixelRatioF());
    pictureLabel_->setPixmap(shown);
}

} // namespace dorvik
