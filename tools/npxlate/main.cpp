#include "npxlate/app.h"

int main(int argc, char** argv) { return tool::run(argc, argv); }
