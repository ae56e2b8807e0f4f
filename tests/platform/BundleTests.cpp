#include "platform/Bundle.h"
#include "platform/PropertyList.h"
#include "support/Bundles.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace dorvik::platform {
namespace {

using test::PlistFormat;

std::map<std::string, std::string> stringsOf(const std::string& text) {
    return propertyListStrings(
        std::span(reinterpret_cast<const uint8_t*>(text.data()), text.size()));
}

void writeText(const std::string& path, const std::string& text) {
    test::makeFolder(path.substr(0, path.rfind('/')));
    std::ofstream(path, std::ios::binary) << text;
}

TEST(Bundle, IdentifierFromXmlAndBinaryInfoPlists) {
    test::TempDir dir;
    for (const PlistFormat format : {PlistFormat::xml, PlistFormat::binary}) {
        const std::string bundle = dir / (format == PlistFormat::xml ? "Xml.app" : "Binary.app");
        test::writeInfoPlist(bundle,
                             {{"CFBundleIdentifier", "com.example.caf\xc3\xa9"},
                              {"CFBundleName", "Caf\xc3\xa9 & <Co>"},
                              {"CFBundleExecutable", "Cafe"}},
                             format);
        EXPECT_EQ(bundleIdentifier(bundle), "com.example.caf\xc3\xa9") << bundle;
        const auto strings = bundleInfoStrings(bundle);
        ASSERT_TRUE(strings.has_value());
        EXPECT_EQ(strings->size(), 3u);
        EXPECT_EQ(strings->at("CFBundleName"), "Caf\xc3\xa9 & <Co>");
    }
}

TEST(Bundle, MissingOrUnusableBundlesHaveNoIdentifier) {
    test::TempDir dir;
    test::writeInfoPlist(dir / "Empty.app", {{"CFBundleIdentifier", ""}});
    test::writeInfoPlist(dir / "Nameless.app", {{"CFBundleName", "Nameless"}});
    test::makeFolder(dir / "NoPlist.app/Contents");
    writeText(dir / "Garbage.app/Contents/Info.plist", "not a property list at all");
    writeText(dir / "Truncated.app/Contents/Info.plist",
              "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>CFBundleIdentifier</key>"
              "<string>com.example");
    writeText(dir / "NumberId.app/Contents/Info.plist",
              "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>CFBundleIdentifier</key>"
              "<integer>7</integer></dict></plist>");
    writeText(dir / "ArrayTop.app/Contents/Info.plist",
              "<?xml version=\"1.0\"?><plist version=\"1.0\"><array><string>com.example"
              "</string></array></plist>");
    test::writeFile(dir / "File.app", 100);
    for (const std::string name :
         {"Empty.app", "Nameless.app", "NoPlist.app", "Garbage.app", "Truncated.app",
          "NumberId.app", "ArrayTop.app", "File.app", "Missing.app"}) {
        EXPECT_EQ(bundleIdentifier(dir / name), std::nullopt) << name;
    }
    EXPECT_EQ(bundleInfoStrings(dir / "NoPlist.app"), std::nullopt);
    EXPECT_EQ(bundleInfoStrings(dir / "File.app"), std::nullopt);
    EXPECT_EQ(bundleInfoStrings(dir / "Garbage.app"), (std::map<std::string, std::string>{}));
}

// Deep nesting would make libplist recurse until the stack runs out; such lists are refused
// before it sees them, while the depth of real ones still reads.
TEST(PropertyList, DeepNestingIsRefusedNotFollowed) {
    const auto nested = [](size_t depth) {
        std::string text = "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>deep</key>";
        for (size_t level = 0; level < depth; ++level) {
            text += level % 2 == 0 ? "<array>" : "<dict><key>k</key>";
        }
        text += "<string>leaf</string>";
        for (size_t level = depth; level-- > 0;) {
            text += level % 2 == 0 ? "</array>" : "</dict>";
        }
        return text + "<key>e</key><array/><key>f</key><dict/><key>CFBundleIdentifier</key>"
                      "<string>com.example.deep</string></dict></plist>";
    };
    EXPECT_EQ(stringsOf(nested(50)).at("CFBundleIdentifier"), "com.example.deep");
    EXPECT_EQ(stringsOf(nested(9999)).size(), 1u); // with its dictionary, 10,000 levels
    EXPECT_TRUE(stringsOf(nested(10000)).empty());
    EXPECT_TRUE(stringsOf(nested(300000)).empty());

    // A binary list whose every object is an array holding the next one.
    const auto chain = [](uint64_t count) {
        const auto bigEndian = [](std::string& out, uint64_t value, int width) {
            for (int shift = (width - 1) * 8; shift >= 0; shift -= 8) {
                out += static_cast<char>((value >> shift) & 0xff);
            }
        };
        std::string bytes = "bplist00";
        std::vector<uint64_t> offsets;
        for (uint64_t index = 0; index < count; ++index) {
            offsets.push_back(bytes.size());
            bytes += static_cast<char>(index + 1 < count ? 0xA1 : 0xA0);
            if (index + 1 < count) {
                bigEndian(bytes, index + 1, 4);
            }
        }
        const uint64_t tableOffset = bytes.size();
        for (uint64_t offset : offsets) {
            bigEndian(bytes, offset, 4);
        }
        bytes += std::string(6, '\0') + "\x04\x04";
        bigEndian(bytes, count, 8);
        bigEndian(bytes, 0, 8);
        bigEndian(bytes, tableOffset, 8);
        return bytes;
    };
    EXPECT_TRUE(stringsOf(chain(200000)).empty());
    EXPECT_TRUE(stringsOf(chain(3)).empty()); // read, but its top level is no dictionary
    std::string broken = chain(3);
    broken[broken.size() - 1] = '\x7f'; // the offset table would lie beyond the end
    EXPECT_TRUE(stringsOf(broken).empty());
}

} // namespace
} // namespace dorvik::platform
