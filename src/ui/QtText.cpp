#include "ui/QtText.h"

#include "system/TextForms.h"

#include <QObject>

namespace dorvik {

QString filesText(int64_t count) {
    return count == 1 ? QObject::tr("1 file")
                      : QObject::tr("%1 files").arg(qtText(TextForms::count(count)));
}

} // namespace dorvik
