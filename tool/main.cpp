#include "tool/start_local.h"

int main(int argc, char** argv) { return kzStartLocalMain(argc, argv); }
