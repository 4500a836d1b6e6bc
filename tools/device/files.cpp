#include "files.h"

#include <fstream>
#include <iterator>
#include <string>

namespace device
{

Bytes ReadWholeFile(const char* path)
{
    std::ifstream in(path, std::ios::binary);
    Bytes bytes(std::istreambuf_iterator<char>(in), {});
    if (!in) throw Refusal(std::string("cannot read ") + path);
    return bytes;
}

void WriteWholeFile(const char* path, std::span<const uint8_t> bytes)
{
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!out.flush()) throw Refusal(std::string("cannot write ") + path);
}

} // namespace device
