#include "platform/application.h"

int main(int argc, char** argv) {
  pelmarix::platform::applicationMain(argc, argv);
  return 0;
}
