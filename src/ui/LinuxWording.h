#pragma once

// The Linux words as the application's translation. Every text a page shows passes Qt's
// localisation lookup (tr(), and shownText for the core's texts) with its English key; installed
// on the application, this translator answers the keys that name a Mac from the one table of
// base/Wording and lets every other key through as it is.

#include <QTranslator>

namespace dorvik {

class LinuxWording : public QTranslator {
    Q_OBJECT

public:
    using QTranslator::QTranslator;

    QString translate(const char* context, const char* sourceText,
                      const char* disambiguation = nullptr, int n = -1) const override;
    bool isEmpty() const override { return false; }
};

} // namespace dorvik
