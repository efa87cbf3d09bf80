#include "Platform/Foundation/Process/HardwareModel.h"

#include <fstream>

std::string hardwareModel() {
  std::ifstream file("/sys/class/dmi/id/product_name");
  std::string model;
  std::getline(file, model);
  return model;
}
