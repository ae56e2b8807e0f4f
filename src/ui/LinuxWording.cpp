#include "ui/LinuxWording.h"

#include "base/Wording.h"
#include "ui/QtText.h"

namespace dorvik {

QString LinuxWording::translate(const char* /*context*/, const char* sourceText,
                                const char* /*disambiguation*/, int /*n*/) const {
    if (sourceText == nullptr) {
        return {};
    }
    // An empty answer sends the lookup on, and in the end to the key itself.
    const auto rendered = Wording::rendering(sourceText);
    return rendered ? qtText(*rendered) : QString();
}

} // namespace dorvik
