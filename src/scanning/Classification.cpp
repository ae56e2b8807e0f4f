#include "scanning/Classification.h"

#include "scanning/LinuxPlaces.h"

#include <array>
#include <utility>

namespace dorvik::Classification {

namespace {

// Inserted in this order; a word met twice keeps the later kind ("exs" ends up as code).
constexpr std::array<std::pair<FileKind, std::string_view>, 7> extensionLists = {{
    {FileKind::document, "pdf doc docx xls xlsx ppt pptx pages numbers key txt rtf rtfd md "
                         "markdown csv tsv epub odt ods odp tex log json xml yaml yml html htm"},
    {FileKind::image, "jpg jpeg png heic heif gif tif tiff bmp webp raw cr2 cr3 nef arw dng orf "
                      "raf rw2 psd psb ai svg eps sketch fig xcf exr hdr icns ico avif jxl"},
    {FileKind::video, "mov mp4 m4v avi mkv webm mts m2ts mpg mpeg wmv flv 3gp braw r3d mxf vob "
                      "prproj fcpxml"},
    {FileKind::audio, "mp3 m4a m4b m4p aac wav aif aiff flac ogg opus caf alac wma mid midi exs "
                      "sf2 als band"},
    {FileKind::archive, "zip rar 7z tar gz tgz bz2 tbz xz txz lz lzma zst cab sit sitx cpgz"},
    {FileKind::diskImage, "dmg iso img sparseimage sparsebundle toast vmdk vdi qcow2 vhd vhdx "
                          "ipsw pkg mpkg xip"},
    {FileKind::code, "swift m mm h hpp c cc cpp js mjs cjs ts tsx jsx py rb go rs java kt kts "
                     "php cs sh zsh bash sql lua dart scala r pl ex exs erl hs vue svelte css "
                     "scss sass less gradle o a dylib so class jar wasm pyc"},
}};

constexpr size_t longestExtension = 12;

std::unordered_map<std::string_view, FileKind> buildExtensionTable() {
    std::unordered_map<std::string_view, FileKind> table;
    for (const auto& [kind, list] : extensionLists) {
        size_t start = 0;
        while (start < list.size()) {
            size_t end = list.find(' ', start);
            if (end == std::string_view::npos) {
                end = list.size();
            }
            if (end > start) {
                table[list.substr(start, end - start)] = kind;
            }
            start = end + 1;
        }
    }
    return table;
}

bool endsWith(std::string_view name, std::string_view suffix) {
    return name.ends_with(suffix);
}

bool endsWithAny(std::string_view name, std::initializer_list<std::string_view> suffixes) {
    for (std::string_view suffix : suffixes) {
        if (endsWith(name, suffix)) {
            return true;
        }
    }
    return false;
}

bool isAnyOf(std::string_view value, std::initializer_list<std::string_view> options) {
    for (std::string_view option : options) {
        if (value == option) {
            return true;
        }
    }
    return false;
}

std::optional<StorageBucket> bucketUnderUsers(std::span<const std::string_view> c,
                                              std::optional<StorageBucket> inherited) {
    // c[1] is the account name and is not looked at.
    if (c.size() >= 3 && c[2] == ".Trash") {
        return StorageBucket::trash;
    }
    if (c.size() >= 3 && c[2] == "Library") {
        if (c.size() == 3) {
            return StorageBucket::appData;
        }
        const std::string_view fourth = c[3];
        if (isAnyOf(fourth, {"Caches", "Logs", "HTTPStorages", "Saved Application State"})) {
            return StorageBucket::junk;
        }
        if (fourth == "Developer") {
            return StorageBucket::developer;
        }
        if (isAnyOf(fourth, {"Mail", "Messages", "Mobile Documents", "CloudStorage"})) {
            return std::nullopt;
        }
        return StorageBucket::appData;
    }
    if (c.size() >= 3 && c[2] == "Applications") {
        return inherited;
    }
    if (inherited == StorageBucket::appData) {
        return inherited;
    }
    return std::nullopt;
}

std::optional<StorageBucket> bucketByFirstComponent(std::span<const std::string_view> c,
                                                    std::optional<StorageBucket> inherited) {
    const std::string_view first = c[0];
    if (first == "Users") {
        return bucketUnderUsers(c, inherited);
    }
    if (first == "Applications") {
        return inherited;
    }
    if (first == "Library") {
        if (c.size() == 1) {
            return StorageBucket::system;
        }
        if (c[1] == "Caches" || c[1] == "Logs") {
            return StorageBucket::junk;
        }
        if (c[1] == "Developer") {
            return StorageBucket::developer;
        }
        return StorageBucket::system;
    }
    if (first == "private") {
        if (c.size() >= 3 && c[1] == "var" && (c[2] == "folders" || c[2] == "log")) {
            return StorageBucket::junk;
        }
        if (c.size() == 1) {
            return StorageBucket::system;
        }
        if (c[1] == "tmp") {
            return StorageBucket::junk;
        }
        return StorageBucket::system;
    }
    if (first == "opt" || first == "usr") {
        return StorageBucket::developer;
    }
    if (isAnyOf(first, {"System", "cores", "sw", ".Spotlight-V100", ".fseventsd",
                        ".DocumentRevisions-V100", ".PKInstallSandboxManager-SystemSoftware",
                        "MobileSoftwareUpdate"})) {
        return StorageBucket::system;
    }
    return inherited;
}

} // namespace

const std::unordered_map<std::string_view, FileKind>& extensionTable() {
    static const auto table = buildExtensionTable();
    return table;
}

const std::unordered_set<std::string_view>& packageExtensions() {
    static const std::unordered_set<std::string_view> set = {
        "app",        "photoslibrary", "musiclibrary", "tvlibrary",    "imovielibrary", "fcpbundle",
        "logicx",     "bundle",        "framework",    "plugin",       "kext",          "xpc",
        "appex",      "xcarchive",     "xcodeproj",    "xcworkspace",  "rtfd",          "pages",
        "numbers",    "key",           "sparsebundle", "photolibrary", "aplibrary",     "band",
        "savedState", "mdimporter",    "qlgenerator",  "prefPane",     "saver",         "component",
        "vst",        "vst3",
    };
    return set;
}

const std::unordered_set<std::string_view>& developerFolderNames() {
    static const std::unordered_set<std::string_view> set = {
        "node_modules",
        "DerivedData",
        "CoreSimulator",
        ".gradle",
        ".npm",
        ".cargo",
        ".rustup",
        ".m2",
        ".cocoapods",
        ".pub-cache",
        ".nuget",
        "Pods",
        ".venv",
        "venv",
        "__pycache__",
        ".next",
        ".turbo",
        "Developer",
        ".docker",
        "com.docker.docker",
        ".bun",
        ".pnpm-store",
        "go",
    };
    return set;
}

FileKind fileKindOfName(const char* name, size_t length) {
    if (length < 2) {
        return FileKind::other;
    }
    // A dot at index 0 is a hidden name, not an extension.
    size_t dot = length - 1;
    while (dot > 0 && name[dot] != '.') {
        --dot;
    }
    if (dot == 0) {
        return FileKind::other;
    }
    const size_t extensionLength = length - dot - 1;
    if (extensionLength < 1 || extensionLength > longestExtension) {
        return FileKind::other;
    }
    char lower[longestExtension];
    for (size_t i = 0; i < extensionLength; ++i) {
        const char ch = name[dot + 1 + i];
        lower[i] = (ch >= 'A' && ch <= 'Z') ? static_cast<char>(ch - 'A' + 'a') : ch;
    }
    const auto& table = extensionTable();
    const auto found = table.find(std::string_view(lower, extensionLength));
    return found == table.end() ? FileKind::other : found->second;
}

FileKind directoryKindOfName(std::string_view name) {
    return endsWith(name, ".app") ? FileKind::application : FileKind::other;
}

bool isPackageName(std::string_view name) {
    const size_t dot = name.rfind('.');
    if (dot == std::string_view::npos) {
        return false;
    }
    return packageExtensions().contains(name.substr(dot + 1));
}

StorageBucket defaultBucket(FileKind kind) {
    switch (kind) {
    case FileKind::document:
    case FileKind::code:
        return StorageBucket::documents;
    case FileKind::image:
        return StorageBucket::images;
    case FileKind::video:
        return StorageBucket::video;
    case FileKind::audio:
        return StorageBucket::audio;
    case FileKind::archive:
    case FileKind::diskImage:
        return StorageBucket::archives;
    case FileKind::application:
        return StorageBucket::applications;
    case FileKind::other:
        break;
    }
    return StorageBucket::other;
}

std::optional<StorageBucket> directoryBucket(std::span<const std::string_view> components,
                                             std::string_view name,
                                             std::optional<StorageBucket> inherited,
                                             ScanContext context) {
    if (endsWith(name, ".app")) {
        return StorageBucket::applications;
    }
    if (endsWithAny(name, {".photoslibrary", ".photolibrary"})) {
        return StorageBucket::images;
    }
    if (endsWithAny(name, {".musiclibrary", ".logicx", ".band"})) {
        return StorageBucket::audio;
    }
    if (endsWithAny(name, {".fcpbundle", ".imovielibrary", ".tvlibrary"})) {
        return StorageBucket::video;
    }
    if (endsWith(name, ".xcarchive")) {
        return StorageBucket::developer;
    }
    // Once inside a labelled place a folder stays there; App Data and System are looser labels
    // that what lies below may refine.
    if (inherited.has_value() && *inherited != StorageBucket::appData &&
        *inherited != StorageBucket::system && *inherited != StorageBucket::other) {
        return inherited;
    }
    const bool linuxLayout = context.layout == DiskLayout::linuxDesktop;
    // A Linux system place decides before the developer folder names: a __pycache__ or
    // node_modules in /usr belongs to a package of the system.
    if (linuxLayout) {
        if (auto place = LinuxPlaces::systemPlaceBucket(components, context.rootDepth)) {
            return place;
        }
    }
    if (developerFolderNames().contains(name)) {
        return StorageBucket::developer;
    }
    if (components.empty()) {
        return inherited;
    }
    if (linuxLayout) {
        if (auto depth = LinuxPlaces::homeDepth(components, context.home)) {
            return LinuxPlaces::homeBucket(components.subspan(*depth), inherited);
        }
    }
    return bucketByFirstComponent(components, inherited);
}

} // namespace dorvik::Classification
