#include "window/main/Run.h"

int main(int argc, char** argv) {
    return tracelet::Run(argc, argv);
}
