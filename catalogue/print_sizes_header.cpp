// Prints include/npxlate/sizes.h as it is to be; scripts/sizes puts it there.
#include <iostream>

#include "catalogue/sizes_header.h"

int main() { std::cout << catalogue::sizes_header(); }
