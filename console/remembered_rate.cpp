// SPDX-License-Identifier: MIT
#include "console/remembered_rate.h"

#include <fstream>
#include <utility>
#include <vector>

#include "console/system.h"
#include "link/link_state.h"

namespace console
{

namespace
{

namespace fs = std::filesystem;

constexpr size_t MostPorts = 64, LongestName = 256;

struct Row {
    std::string port;
    uint32_t rate;
};

fs::path RatesFile()
{
    const fs::path folder = StateFolder();
    return folder.empty() ? folder : folder / "rates";
}

// Lines of "RATE PORT"; the port used last is first.
std::vector<Row> ReadRows()
{
    std::vector<Row> rows;
    std::ifstream file(RatesFile());
    Row row;
    while (rows.size() < MostPorts && file >> row.rate && file.ignore(1) && std::getline(file, row.port))
        if (FindBaudrate(row.rate) >= 0 && row.port.size() <= LongestName) rows.push_back(row);
    return rows;
}

} // namespace

std::optional<uint32_t> RememberedRate(const std::string& port)
{
    for (const Row& row : ReadRows())
        if (row.port == port) return row.rate;
    return {};
}

void RememberRate(const std::string& port, uint32_t rate)
{
    const fs::path target = RatesFile();
    if (target.empty() || port.size() > LongestName || port.find('\n') != port.npos) return;
    const std::vector<Row> rows = ReadRows();
    if (!rows.empty() && rows[0].port == port && rows[0].rate == rate) return;
    std::error_code ignored;
    fs::create_directories(target.parent_path(), ignored);
    // Written to a second file and renamed, so that two programs at the same time leave one complete file.
    const fs::path draft = target.string() + "." + std::to_string(std::hash<std::string>{}(port)) + ".new";
    {
        std::ofstream file(draft, std::ios::trunc);
        file << rate << ' ' << port << '\n';
        size_t count = 1;
        for (const Row& row : rows)
            if (row.port != port && count++ < MostPorts) file << row.rate << ' ' << row.port << '\n';
        if (!file.flush()) {
            file.close();
            fs::remove(draft, ignored);
            return;
        }
    }
    fs::rename(draft, target, ignored);
}

} // namespace console
