#include "ui/files/PreviewWindow.h"

#include "base/TextForms.h"
#include "platform/PeekFile.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/widgets/PictureView.h"

#include <QBuffer>
#include <QFontDatabase>
#include <QImageReader>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScreen>
#include <QStackedLayout>
#include <QVBoxLayout>

#include <optional>

namespace dorvik {

namespace {

// Enough of a text to see what it is, little enough to read at once from any disk; also enough to
// tell a picture by its first bytes.
constexpr size_t previewStartBytes = 64 * 1024;
// Pictures larger than this are not read whole for a glance; their facts are shown instead.
constexpr size_t largestPicture = 128 * 1024 * 1024;

QByteArray asBytes(const std::vector<uint8_t>& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size())};
}

// A picture when the first bytes say it is one in a format Qt reads. Every read leaves the
// file's access time alone, so that a glance does not make the file look used.
QImage pictureOf(const std::string& path, const QByteArray& start) {
    QBuffer startBuffer;
    startBuffer.setData(start);
    startBuffer.open(QIODevice::ReadOnly);
    if (QImageReader::imageFormat(&startBuffer).isEmpty()) {
        return {};
    }
    const auto whole = platform::peekFile(path, largestPicture + 1);
    if (!whole || whole->size() > largestPicture) {
        return {};
    }
    QBuffer buffer;
    buffer.setData(asBytes(*whole));
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    return reader.read();
}

// Text is what decodes as UTF-8 and holds no NUL byte.
std::optional<QString> textOf(const QByteArray& bytes) {
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
    picture_ = new PictureView;
    text_ = new QPlainTextEdit;
    text_->setReadOnly(true);
    text_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    facts_ = Style::label(QString(), Style::TextRole::body);
    facts_->setTextFormat(Qt::RichText);
    facts_->setAlignment(Qt::AlignCenter);
    facts_->setWordWrap(true);
    stack_->addWidget(picture_);
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
    const std::string path = node->path();
    setWindowTitle(nameText(node->name));
    caption_->setText(nameText(node->name) + QStringLiteral(" · ") +
                      qtText(TextForms::size(node->size)));
    QByteArray start;
    if (!node->isDirectory) {
        start =
            asBytes(platform::peekFile(path, previewStartBytes).value_or(std::vector<uint8_t>{}));
    }
    picture_->setPicture(node->isDirectory ? QImage() : pictureOf(path, start));
    if (!picture_->picture().isNull()) {
        stack_->setCurrentWidget(picture_);
        fitToPicture();
    } else if (const auto text =
                   node->isDirectory || start.isEmpty() ? std::nullopt : textOf(start)) {
        text_->setPlainText(*text);
        stack_->setCurrentWidget(text_);
    } else {
        facts_->setText(QStringLiteral("<b>%1</b><br><br>%2<br>%3 · %4<br>%5 %6")
                            .arg(nameText(node->name).toHtmlEscaped(),
                                 shownText(info(node->kind).displayName).toHtmlEscaped(),
                                 qtText(TextForms::size(node->size)),
                                 shownText(info(node->bucket).displayName).toHtmlEscaped(),
                                 tr("Modified"),
                                 qtText(TextForms::abbreviatedDate(node->modified))));
        stack_->setCurrentWidget(facts_);
    }
    show();
    raise();
}

PreviewWindow::Showing PreviewWindow::showing() const {
    if (stack_->currentWidget() == picture_) {
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

void PreviewWindow::fitToPicture() {
    const QScreen* screen = this->screen();
    const QSize most =
        screen != nullptr ? screen->availableGeometry().size() * 0.8 : QSize(1280, 960);
    const int margins = 2 * Style::cardPadding;
    const int below = caption_->sizeHint().height() + layout()->spacing();
    QSize wanted = picture_->sizeHint() + QSize(margins, margins + below);
    wanted = wanted.boundedTo(most).expandedTo(QSize(640, 480));
    resize(wanted);
}

} // namespace dorvik
