#include "kit/groups/paired_differences.h"

bool PairedDifferences::ReadPair(const SettingsReader& settings) {
  const auto indices = settings.List<std::int32_t>("variableIndex");
  if (indices.size() != 2) return false;
  first = indices[0];
  second = indices[1];
  return true;
}

const double* PairedDifferences::Of(RecordBatch& batch) {
  const double* from = batch.Of(first);
  const double* to = batch.Of(second);
  if (inHand.size() < batch.Size()) inHand.resize(batch.Size());
  // Difference in two loops, each of which takes several records at a time.
  double* d = inHand.data();
  for (std::size_t i = 0; i < batch.Size(); ++i) d[i] = to[i] - from[i];
  for (std::size_t i = 0; i < batch.Size(); ++i) d[i] = to[i] == from[i] ? 0.0 : d[i];
  return d;
}
