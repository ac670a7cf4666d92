#include <algorithm>
#include <cstring>
#include <limits>

#include "foundation/host_helpers.h"

namespace HbHelperV1 {

std::unique_ptr<HostHelper> HostHelper::create(HBHost* host) {
  if (host == nullptr) return nullptr;
  return std::unique_ptr<HostHelper>(new HostHelper());
}

XMLDocument HostHelper::createNew(const char* name) const {
  XMLDocument document;
  document.addElement(name);
  return document;
}

std::unique_ptr<ContainerHelper> ContainerHelper::create(HBContainerFile* container) {
  if (container == nullptr || !HB_HAS(container, HBContainerFileTable, putStream)) return nullptr;
  return std::unique_ptr<ContainerHelper>(new ContainerHelper(container));
}

XMLDocument ContainerHelper::constructMetadata(const std::string& mediaType,
                                               const std::string& fileName) const {
  XMLDocument document;
  document.addElement("Metadata");
  const auto addEntry = [&document](const char* name, const std::string& value) {
    XMLElement entry = document.addElement("Entry");
    entry.addAttribute("name", std::string(name));
    entry.addAttribute("value", value);
  };
  addEntry("mediaType", mediaType);
  addEntry("fileName", fileName);
  return document;
}

std::uint32_t ContainerHelper::putString(HBContainerStreamKey* key, const XMLDocument& metadata,
                                         const std::string& text, std::int32_t* err) const {
  std::string description;
  metadata.doc2string(description);
  return AskHost(err, [&] {
    return container->table->putStream(container, key, description.c_str(), description.size(),
                                       text.c_str(), text.size(), err);
  });
}

DataHelper::DataHelper(HBIterator* iterator, bool useBlocks)
    : iterator(iterator),
      blocks(useBlocks && iterator != nullptr && HB_HAS(iterator, HBIteratorTable, readBlock)),
      columns(useBlocks && iterator != nullptr && HB_HAS(iterator, HBIteratorTable, getColumn)) {}

std::uint32_t DataHelper::Rewind(std::int32_t* err) {
  isAtEnd = false;
  if (iterator != nullptr && HB_HAS(iterator, HBIteratorTable, rewind)) {
    return AskHost(err, [&] { return iterator->table->rewind(iterator, err); });
  }
  *err = kBrokenIterator;
  return HB_FAILED;
}

std::uint32_t DataHelper::ReadBlock(double* buffer, std::size_t capacity, std::size_t fieldCount,
                                    std::size_t* recordCount, std::int32_t* err) {
  *recordCount = 0;
  if (isAtEnd) return HB_OK;
  const std::uint32_t result = AskHost(err, [&] {
    return blocks ? iterator->table->readBlock(iterator, buffer, capacity, fieldCount, recordCount,
                                               err)
                  : ReadRecords(buffer, capacity, fieldCount, recordCount, err);
  });
  isAtEnd = result == HB_END_OF_RECORDS;
  if (result != HB_OK && !isAtEnd) return result;
  if (*recordCount > capacity / std::max<std::size_t>(fieldCount, 1)) {
    *err = kBrokenIterator;
    return HB_FAILED;
  }
  return HB_OK;
}

std::uint32_t DataHelper::GetPart(std::size_t field, std::size_t record,
                                  QDCommon_700::ColumnPart& part, std::int32_t* err) {
  part = {};
  std::int32_t isLasting = 0;
  const std::uint32_t result = AskHost(err, [&] {
    return iterator->table->getColumn(iterator, field, record, &part.values, &part.count,
                                      &isLasting, err);
  });
  if (result == HB_END_OF_RECORDS && part.count == 0) {
    part = {};
    return HB_OK;
  }
  if (result != HB_OK && result != HB_END_OF_RECORDS) return result;
  part.isLasting = isLasting != 0;
  constexpr std::size_t kMostValues = std::numeric_limits<std::ptrdiff_t>::max() / sizeof(double);
  const bool isAligned = reinterpret_cast<std::uintptr_t>(part.values) % alignof(double) == 0;
  if (part.values == nullptr || !isAligned || part.count == 0 || part.count > kMostValues) {
    *err = kBrokenIterator;
    return HB_FAILED;
  }
  return HB_OK;
}

std::uint32_t DataHelper::ReadRecords(double* buffer, std::size_t capacity, std::size_t fieldCount,
                                      std::size_t* recordCount, std::int32_t* err) {
  if (iterator == nullptr || !HB_HAS(iterator, HBIteratorTable, next) ||
      !HB_HAS(iterator, HBIteratorTable, getValue)) {
    *err = kBrokenIterator;
    return HB_FAILED;
  }
  const auto next = iterator->table->next;
  const auto getValue = iterator->table->getValue;
  const std::size_t recordsThatFit = fieldCount == 0 ? 0 : capacity / fieldCount;
  for (std::size_t record = 0; record < recordsThatFit; ++record) {
    const std::uint32_t result = next(iterator, err);
    if (result != HB_OK) return result;
    for (std::size_t field = 0; field < fieldCount; ++field, ++buffer) {
      const void* value = nullptr;
      std::size_t valueSize = 0;
      const std::uint32_t answer = getValue(iterator, field, &value, &valueSize, err);
      if (answer != HB_OK && answer != HB_END_OF_RECORDS) return answer;
      if (answer != HB_OK || value == nullptr || valueSize != sizeof(double)) {
        *err = kBrokenIterator;
        return HB_FAILED;
      }
      std::memcpy(buffer, value, sizeof(double));
    }
    *recordCount = record + 1;
  }
  return HB_OK;
}

}  // namespace HbHelperV1
