#pragma once
// The few small files of the fetched updates, each read and replaced whole. Any one thread at a time.

#include <optional>
#include <string>

namespace vantor {

class UpdateFiles {
public:
    virtual ~UpdateFiles() = default;
    [[nodiscard]] virtual std::optional<std::string> read(const std::string& name) const = 0;
    // All of it or nothing, on disk when it returns; false: what was there stays.
    [[nodiscard]] virtual bool replace(const std::string& name, const std::string& contents) = 0;
};

// In a folder that is made when it is first written to. An empty name is that of no folder: nothing is there.
class FolderUpdateFiles : public UpdateFiles {
public:
    explicit FolderUpdateFiles(std::string folder);

    [[nodiscard]] std::optional<std::string> read(const std::string& name) const override;
    [[nodiscard]] bool replace(const std::string& name, const std::string& contents) override;

private:
    std::string folder_;
};

}  // namespace vantor
