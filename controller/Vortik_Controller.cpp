// SPDX-License-Identifier: Apache-2.0
#include "controller/RunController.h"

int main(int argc, char** argv) { return run_controller(argc, argv); }
