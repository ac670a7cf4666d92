#pragma once

#include <npar/host_interface.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

#include "foundation/export.h"
#include "foundation/iterators.h"

/// Handy classes over the host's tables and documents.
namespace HbHelperV1 {

/// Names of elements, attributes and values in the framework's requirement documents. Some look
/// misspelt: hosts read them so.
struct XMLElements {
  static constexpr const char* Execution = "Execution";
  static constexpr const char* Operation = "Operation";
  static constexpr const char* Parameters = "Parameters";
  static constexpr const char* Parameter = "Parameter";
  static constexpr const char* Attribute = "Attribute";
  static constexpr const char* ListValue = "ListValue";
  static constexpr const char* StructuredValue = "StructuredValue";
  static constexpr const char* Value = "Value";
};
struct XMLAttributes {
  static constexpr const char* ComponentId = "componentId";
  static constexpr const char* ModuleId = "moduleId";
  static constexpr const char* Id = "id";
  static constexpr const char* InputIds = "inputIds";
  static constexpr const char* DependencyIds = "dependencyIds";
  static constexpr const char* Name = "name";
  static constexpr const char* Value = "value";
};
struct XMLEntities {
  static constexpr const char* CatEncode = "CatEncode";
  static constexpr const char* EncodingID = "Encoding";
  static constexpr const char* EncodingModuleID = "EncodingModule";
  static constexpr const char* ExcludeUMissField = "ExcludeUMissField";
  static constexpr const char* Field_Name = "Field_Name";
  static constexpr const char* FreqWeightAdj = "FreqWeightAdj";
  static constexpr const char* ListwiseDelete = "ListwiseDelete";
  static constexpr const char* MissingID = "Missing";
  static constexpr const char* MissingModuleID = "MissingModule";
  static constexpr const char* Nominal = "Nominal";
  static constexpr const char* None = "None";
  static constexpr const char* Ordinal = "Ordinal";
  static constexpr const char* RequiredFields = "RequiredFields";
  static constexpr const char* Round = "Round";
  static constexpr const char* WeightFeild = "WeightFeild";
};

/// An element of an XMLDocument: a light handle, good as long as any copy of its document is.
class QD_EXPORT XMLElement {
 public:
  XMLElement() noexcept = default;
  /// False for a handle to nothing; reading such a one gives empty answers.
  explicit operator bool() const noexcept { return node != nullptr; }

  /// Appends an element and returns it.
  XMLElement addElement(const char* name);
  void addAttribute(const char* name, const std::string& value);
  void addAttribute(const char* name, std::int32_t value);

  [[nodiscard]] std::string_view name() const;
  [[nodiscard]] bool hasAttribute(const char* name) const;
  [[nodiscard]] std::string_view attribute(const char* name) const;
  /// The first attribute that is not among `known`, or stands a second time; empty for none.
  [[nodiscard]] std::string_view unexpectedAttribute(
      std::initializer_list<std::string_view> known) const;
  /// Does text other than white space stand directly in the element?
  [[nodiscard]] bool hasText() const;
  /// The first child element, of that name where one is given.
  [[nodiscard]] XMLElement firstChild(const char* name = nullptr) const;
  /// The next element beside this one, of that name where one is given.
  [[nodiscard]] XMLElement nextSibling(const char* name = nullptr) const;
  /// Byte offset of the element's '<' in the text it was read from, -1 for one that was made.
  [[nodiscard]] std::ptrdiff_t offset() const;

 private:
  friend class XMLDocument;
  explicit XMLElement(void* node) noexcept : node(node) {}
  void* node = nullptr;
};

/// A document; copies share one tree.
class QD_EXPORT XMLDocument {
 public:
  /// An empty document.
  XMLDocument();
  /// Reads the host's document and releases it. A text that is not well-formed UTF-8 XML, declares
  /// a document type, refers to entities of its own or nests more than 200 elements leaves the
  /// document empty: see isWellFormed and problem.
  explicit XMLDocument(HBXML* document);
  XMLDocument(const XMLDocument&);
  XMLDocument& operator=(const XMLDocument&);
  ~XMLDocument();

  [[nodiscard]] bool isWellFormed() const;
  /// Where and why the text could not be read; empty for a well-formed one.
  [[nodiscard]] const std::string& problem() const;
  /// "line 3, column 5" of an element that was read, columns in characters; empty for one that was
  /// made.
  [[nodiscard]] std::string place(const XMLElement& element) const;
  [[nodiscard]] XMLElement root() const;
  /// The first element becomes the root, every further one a child of the root.
  XMLElement addElement(const char* name);
  /// The whole text, with declaration.
  void doc2string(std::string& text) const;

 private:
  struct Tree;
  std::shared_ptr<Tree> tree;
};

/// Fills a host's buffer with a text and its zero byte. *needed is set in any case; false, and the
/// buffer is left alone, where it is too small.
inline bool FillBuffer(const std::string& text, char* buffer, std::size_t capacity,
                       std::size_t* needed) noexcept {
  if (needed != nullptr) *needed = text.size() + 1;
  if (buffer == nullptr || capacity <= text.size()) return false;
  std::memcpy(buffer, text.c_str(), text.size() + 1);
  return true;
}

/// The host threw an exception, which the functions of its tables must not.
inline constexpr std::int32_t kHostThrew = 240017;

/// Calls into the host: its answer, or HB_FAILED with kHostThrew in *err where it throws.
template <typename Call>
std::uint32_t AskHost(std::int32_t* err, Call&& call) noexcept {
  try {
    return call();
  } catch (...) {
    *err = kHostThrew;
    return HB_FAILED;
  }
}

class QD_EXPORT HostHelper {
 public:
  /// Null without a host.
  [[nodiscard]] static std::unique_ptr<HostHelper> create(HBHost* host);
  /// A new document whose root has that name.
  [[nodiscard]] XMLDocument createNew(const char* name) const;

 private:
  HostHelper() noexcept = default;
};

class QD_EXPORT ContainerHelper {
 public:
  /// Null without a container that takes streams.
  [[nodiscard]] static std::unique_ptr<ContainerHelper> create(HBContainerFile* container);
  /// The description of a stream.
  [[nodiscard]] XMLDocument constructMetadata(const std::string& mediaType,
                                              const std::string& fileName) const;
  /// Puts a text as a whole stream; the host's result.
  std::uint32_t putString(HBContainerStreamKey* key, const XMLDocument& metadata,
                          const std::string& text, std::int32_t* err) const;

 private:
  explicit ContainerHelper(HBContainerFile* container) noexcept : container(container) {}
  HBContainerFile* container;
};

/// Reads a host's records.
class QD_EXPORT DataHelper {
 public:
  /// `useBlocks`: take the roads of many records where the host offers them.
  DataHelper(HBIterator* iterator, bool useBlocks);

  /// The iterator offers no road, or gave more records than asked for, a value that is no double or
  /// a column without values.
  static constexpr std::int32_t kBrokenIterator = 240016;

  std::uint32_t Rewind(std::int32_t* err);
  /// As many whole records as fit, `fieldCount` doubles each, in field order; *recordCount is 0 at
  /// the end. Records that come together with the end are taken. On the record road, values are
  /// fetched one by one. A host's answer that breaks the rules of its table is HB_FAILED with
  /// kBrokenIterator in *err.
  std::uint32_t ReadBlock(double* buffer, std::size_t capacity, std::size_t fieldCount,
                          std::size_t* recordCount, std::int32_t* err);
  /// Does the host hand out whole columns?
  [[nodiscard]] bool HasColumns() const noexcept { return columns; }
  /// Values of a field from a record on; none behind the last record. As ReadBlock answers.
  std::uint32_t GetPart(std::size_t field, std::size_t record, QDCommon_700::ColumnPart& part,
                        std::int32_t* err);

 private:
  std::uint32_t ReadRecords(double* buffer, std::size_t capacity, std::size_t fieldCount,
                            std::size_t* recordCount, std::int32_t* err);

  HBIterator* iterator;
  bool blocks;
  bool columns;
  bool isAtEnd = false;  // the host has said so since the last rewind, and is not asked again
};

}  // namespace HbHelperV1
