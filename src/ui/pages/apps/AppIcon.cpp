#include "ui/pages/apps/AppIcon.h"

#include "platform/Bundle.h"
#include "ui/Symbols.h"

#include <QFileInfo>
#include <QImageReader>

namespace dorvik {

namespace {

// The files the bundle's icon may be: the name as written, then with the extensions that a
// bundle's icon comes in. A Mac icon (.icns) needs an image plugin that Qt seldom has here.
QStringList candidates(const std::string& bundlePath, const std::string& iconFile) {
    const QString resources = QString::fromStdString(bundlePath + "/Contents/Resources/");
    const QString name = QString::fromStdString(iconFile);
    QStringList files{resources + name};
    if (QFileInfo(name).suffix().isEmpty()) {
        for (const char* extension : {".icns", ".png", ".svg"}) {
            files.append(resources + name + QLatin1String(extension));
        }
    }
    return files;
}

// The icon file the Info.plist names; empty when none, or when it would lead out of the folder.
std::string iconFileName(const std::string& bundlePath) {
    const auto info = platform::bundleInfoStrings(bundlePath);
    if (!info) {
        return {};
    }
    const auto found = info->find("CFBundleIconFile");
    if (found == info->end() || found->second.find('/') != std::string::npos) {
        return {};
    }
    return found->second;
}

QIcon genericIcon() {
    const QIcon themed = QIcon::fromTheme(QStringLiteral("application-x-executable"));
    return themed.isNull() ? Symbols::icon("app.fill", Style::Tint::secondary) : themed;
}

} // namespace

QIcon appIcon(const std::string& bundlePath) {
    if (const std::string iconFile = iconFileName(bundlePath); !iconFile.empty()) {
        for (const QString& file : candidates(bundlePath, iconFile)) {
            QImageReader reader(file);
            if (reader.canRead()) {
                const QImage image = reader.read();
                if (!image.isNull()) {
                    return QIcon(QPixmap::fromImage(image));
                }
            }
        }
    }
    return genericIcon();
}

} // namespace dorvik
