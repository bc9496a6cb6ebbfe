#include "program/main_run.h"

int main(int argc, char** argv) { return vardento::RunProgram(argc, argv); }
