// Compressed input: a model file ending in ".gz" (blend.mps.gz,
// refinery.xmps.gz, plant.zem.gz) is inflated with zlib into a private
// temporary folder, under its own name without ".gz", and read from there;
// the library itself reads plain files only. The copy is removed when the
// InflatedInput goes out of scope.
//
//   InflatedInput in("models/blend.mps.gz");   // in.Path(): /tmp/zem-Ab12Cd/blend.mps
//
// A file that is not gzip data, or that is truncated or corrupt, throws
// ZEM_Exception "Compressed Input Error" naming the file (and the copy is
// removed): a partial stream never reaches a reader.
#pragma once

#include <string>

class InflatedInput {
public:
    // True when `path` names a compressed file (".gz", any case).
    static bool IsCompressed(const std::string& path);
    // `path` without its ".gz".
    static std::string Inner(const std::string& path);

    explicit InflatedInput(const std::string& path);
    ~InflatedInput();
    InflatedInput(const InflatedInput&) = delete;
    InflatedInput& operator=(const InflatedInput&) = delete;

    const std::string& Path() const { return m_path; }

private:
    void Remove();
    std::string m_dir;
    std::string m_path;
};
