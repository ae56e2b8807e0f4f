#include "support/Bundles.h"

#include <gtest/gtest.h>
#include <plist/plist.h>

#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace dorvik::test {

namespace fs = std::filesystem;

void writeInfoPlist(const std::string& bundlePath,
                    const std::map<std::string, std::string>& entries, PlistFormat format) {
    plist_t dictionary = plist_new_dict();
    for (const auto& [key, value] : entries) {
        plist_dict_set_item(dictionary, key.c_str(), plist_new_string(value.c_str()));
    }
    char* bytes = nullptr;
    uint32_t length = 0;
    if (format == PlistFormat::binary) {
        plist_to_bin(dictionary, &bytes, &length);
    } else {
        plist_to_xml(dictionary, &bytes, &length);
    }
    plist_free(dictionary);
    if (bytes == nullptr) {
        throw std::runtime_error("libplist wrote nothing");
    }
    fs::create_directories(bundlePath + "/Contents");
    std::ofstream(bundlePath + "/Contents/Info.plist", std::ios::binary).write(bytes, length);
    if (format == PlistFormat::binary) {
        plist_to_bin_free(bytes);
    } else {
        plist_to_xml_free(bytes);
    }
}

void writePropertyList(const std::string& path, const std::string& xmlBody, PlistFormat format) {
    const std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" +
                            xmlBody + "</plist>\n";
    fs::create_directories(fs::path(path).parent_path());
    if (format == PlistFormat::xml) {
        std::ofstream(path, std::ios::binary) << xml;
        return;
    }
    plist_t root = nullptr;
    plist_from_xml(xml.data(), static_cast<uint32_t>(xml.size()), &root);
    if (root == nullptr) {
        throw std::runtime_error("not a property list: " + xmlBody);
    }
    char* bytes = nullptr;
    uint32_t length = 0;
    plist_to_bin(root, &bytes, &length);
    plist_free(root);
    std::ofstream(path, std::ios::binary).write(bytes, length);
    plist_to_bin_free(bytes);
}

std::string installExecutable(const std::string& bundlePath, const std::string& program,
                              const std::string& name) {
    const std::string target = bundlePath + "/Contents/MacOS/" + name;
    fs::create_directories(bundlePath + "/Contents/MacOS");
    fs::copy_file(program, target, fs::copy_options::overwrite_existing);
    fs::permissions(target, fs::perms::owner_all, fs::perm_options::add);
    return target;
}

std::string identifierOfThisTest(const std::string& prefix) {
    const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
    std::string identifier = prefix;
    for (const char* name : {test->test_suite_name(), test->name()}) {
        identifier += '.';
        for (const char ch : std::string(name)) {
            identifier += static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
        }
    }
    return identifier;
}

} // namespace dorvik::test
