#include "kit/paired_differences.h"

bool PairedDifferences::ReadPair(const QDSettings& settings) {
  std::vector<std::int32_t> indices;
  static_cast<void>(settings.GetSettingValByName("variableIndex", indices));
  if (indices.size() != 2) return false;
  first = indices[0];
  second = indices[1];
  return true;
}
