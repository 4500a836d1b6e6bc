// SPDX-License-Identifier: MIT
// Prints the manual page: manual SECTIONS, where SECTIONS is the file with the sections that no option
// describes.
#include <fstream>
#include <iostream>
#include <iterator>

#include "console/completion.h"

int main(int count, char** arguments)
{
    std::ifstream file(count == 2 ? arguments[1] : "");
    const std::string sections{std::istreambuf_iterator<char>(file), {}};
    if (!file) {
        std::cerr << "usage: toravanectl-manual SECTIONS\n";
        return 2;
    }
    std::cout << console::ManualPage(sections);
    return std::cout.flush() ? 0 : 1;
}
