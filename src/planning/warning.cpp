#include "planning/warning.h"

NPARWarning& NPARWarning::Instance() {
  static NPARWarning* const instance = new NPARWarning;
  return *instance;
}
