// Writes what is computed into the page of surprises: write_surprises PAGE
#include <fstream>
#include <iterator>
#include <string>

#include "docs/fates.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        return 2;
    }
    std::ifstream file{argv[1]};
    const std::string page{std::istreambuf_iterator<char>{file}, {}};
    std::ofstream{argv[1]} << docs::with_fates(page);
    return 0;
}
