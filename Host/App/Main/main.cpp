#include "Host/App/App.h"

int main(int argc, char** argv) { return RunApp(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc)); }
