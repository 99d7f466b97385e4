#include "platform/application.h"

int main(int argc, char** argv) {
  pelmarix::applicationMain(argc, argv);
  return 0;
}
