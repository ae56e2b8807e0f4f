#include "ui/QtText.h"

#include "base/TextForms.h"

#include <QCoreApplication>
#include <QObject>

#include <string>

namespace dorvik {

QString shownText(std::string_view key) {
    return QCoreApplication::translate("Dorvik", std::string(key).c_str());
}

QString nameText(std::string_view name) {
    QString text = qtText(name);
    for (QChar& character : text) {
        if (character.unicode() < 0x20 || character.unicode() == 0x7F) {
            character = QLatin1Char('?');
        }
    }
    return text;
}

QString filesText(int64_t count) {
    return count == 1 ? QObject::tr("1 file")
                      : QObject::tr("%1 files").arg(qtText(TextForms::count(count)));
}

} // namespace dorvik
