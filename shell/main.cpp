#include "shell/Main.h"

int main(int argc, char** argv)
{
    return td::Main(argc, argv);
}
