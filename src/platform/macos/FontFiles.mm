#include "platform/macos/FontFiles.h"

#import <CoreText/CoreText.h>
#import <Foundation/Foundation.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <system_error>

#include "platform/macos/FoundationText.h"

namespace vantor {

namespace {

bool isRegistered(NSURL* file) {
    CFErrorRef error = nullptr;
    if (CTFontManagerRegisterFontsForURL((CFURLRef)file, kCTFontManagerScopeProcess, &error)) return true;
    NSError* const why = [(NSError*)error autorelease];
    return [why code] == kCTFontManagerErrorAlreadyRegistered;
}

bool isFontFile(const std::filesystem::path& path) {
    std::string extension = path.extension().string();
    std::ranges::transform(extension, extension.begin(),
                           [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return extension == ".ttf" || extension == ".otf";
}

}  // namespace

std::size_t registerFontFiles(const std::vector<std::string>& paths) {
    @autoreleasepool {
        std::size_t known = 0;
        for (const std::string& path : paths) {
            NSString* const name = systemText(path);
            if (name && isRegistered([NSURL fileURLWithPath:name])) ++known;
        }
        return known;
    }
}

std::vector<std::string> fontFilesIn(const std::string& folder) {
    std::vector<std::string> files;
    std::error_code none;
    for (const auto& entry : std::filesystem::directory_iterator(folder, none))
        if (isFontFile(entry.path())) files.push_back(entry.path().string());
    std::ranges::sort(files);
    return files;
}

}  // namespace vantor
