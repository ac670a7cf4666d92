#include "report/result_writer.h"

#include <ostream>
#include <utility>

#include "kit/contract/allocation.h"
#include "report/elements.h"

namespace {

constexpr const char* kNamespace = "urn:lyra:statxml:extension:7.0";
constexpr const char* kSchemaInstanceNamespace = "http://www.w3.org/2001/XMLSchema-instance";
constexpr const char* kSchemaLocation = "urn:lyra:statxml:extension:7.0 statxml-7.0.xsd";
constexpr const char* kExtender = "lyra.example";
constexpr const char* kDefaultCopyright = "Copyright (c) Lyra";
constexpr const char* kDefaultApplication = "NonparametricTests";

bool IsCategorical(VariableKind kind) {
  return kind == VariableKind::NumericCategory || kind == VariableKind::StringCategory;
}

/// How the values of a field are to be read; `plain` unless they are points in time.
const char* DataType(StorageKind storage, const char* plain) {
  switch (storage) {
    case StorageKind::Date:
      return "dateDaysSince[1970]";
    case StorageKind::Time:
      return "timeSeconds";
    case StorageKind::Timestamp:
      return "dateTimeSecondsSince[1970]";
    default:
      return plain;
  }
}

}  // namespace

NPARResultWriter::NPARResultWriter(const QDVarList* variables, const UnivariateResults* univariates,
                                   std::vector<std::unique_ptr<XMLElement>> results,
                                   bool analysisMissing, double sigLevel, double confidenceLevel,
                                   std::int32_t weightIndex, std::int32_t caseIdIndex)
    : variables(variables),
      univariates(univariates),
      results(std::move(results)),
      analysisMissing(analysisMissing),
      sigLevel(sigLevel),
      confidenceLevel(confidenceLevel),
      weightIndex(weightIndex),
      caseIdIndex(caseIdIndex),
      varInfo(variables) {}

QDStatus NPARResultWriter::Write(std::ostream& stream, std::int64_t modelId,
                                 const NPARRunInfo& runInfo) {
  const std::unique_ptr<XMLElement> root(XMLElement::Create("StatXML"));
  root->AddAttribute("xmlns", kNamespace);
  root->AddAttribute("xmlns:xsi", kSchemaInstanceNamespace);
  root->AddAttribute("version", "1.0");
  root->AddAttribute("xsi:schemaLocation", kSchemaLocation);
  WriteCounts(*root, IntegerText(modelId));

  XMLElement* extension = root->AddElement("Extension");
  extension->AddAttribute("extender", kExtender);
  output = extension->AddElement("NPAROutput");
  WriteHeader(runInfo);
  WriteDataDictionary();
  WriteTests();
  WriteFieldInfos();

  const int failed = WriteTree(stream, nullptr, root.get(), true);
  stream.flush();
  // The stream is text in memory: only want of memory can stop it.
  return failed == 0 ? QDStatus() : QDStatus(kMemoryExhausted);
}

void NPARResultWriter::WriteCounts(XMLElement& root, const std::string& modelId) const {
  XMLElement* predictive = root.AddElement("PMMLModel");
  predictive->AddAttribute("modelID", modelId);
  predictive->AddAttribute("modelType", "NonParametricTests");
  predictive->AddElement("PredictiveSummary");

  XMLElement* descriptive = root.AddElement("DescriptiveModel");
  descriptive->AddAttribute("modelID", modelId);
  XMLElement* counts = descriptive->AddElement("DescriptiveSummary")->AddElement("Counts");
  counts->AddAttribute("totalFreq", variables->GetWeightedCount());
  counts->AddAttribute("totalCount", variables->GetUnWeightedCount());
  counts->AddAttribute("droppedCount", variables->GetDroppedCount());
  counts->AddAttribute("badWeightCount", variables->GetBadWeightCount());
  counts->AddAttribute("droppedFreq", variables->GetWeightedDroppedCount());
}

void NPARResultWriter::WriteHeader(const NPARRunInfo& runInfo) {
  XMLElement* header = output->AddElement("Header");
  header->AddAttribute("copyright",
                       runInfo.copyright.empty() ? kDefaultCopyright : runInfo.copyright);
  XMLElement* application = header->AddElement("Application");
  application->AddAttribute(
      "name", runInfo.applicationName.empty() ? kDefaultApplication : runInfo.applicationName);
  if (!runInfo.applicationVersion.empty()) {
    application->AddAttribute("version", runInfo.applicationVersion);
  }
}

void NPARResultWriter::WriteDataDictionary() {
  XMLElement* dictionary = output->AddElement("DataDictionary");
  for (std::int32_t index = 0; index < variables->Size(); ++index) {
    WriteDataField(*dictionary, index);
  }
  dictionary->AddAttribute("numberOfFields", static_cast<double>(variables->Size()));
}

void NPARResultWriter::WriteDataField(XMLElement& dictionary, std::int32_t index) const {
  const IQDVariable& variable = *variables->GetVarAt(index);
  XMLElement* field = dictionary.AddElement("DataField");
  field->AddAttribute("index", IntegerText(index));
  field->AddAttribute("name", variable.GetName());
  if (!variable.GetLabel().empty()) field->AddAttribute("displayName", variable.GetLabel());

  const VariableKind kind = variable.GetType();
  if (kind == VariableKind::Continuous || kind == VariableKind::Other) {
    field->AddAttribute("optype", "continuous");
    field->AddAttribute("dataType", DataType(variable.GetStorageKind(), "double"));
  }
  if (!IsCategorical(kind)) return;
  field->AddAttribute("optype", "categorical");
  field->AddAttribute("dataType",
                      DataType(variable.GetStorageKind(),
                               kind == VariableKind::NumericCategory ? "double" : "string"));
  const QDCategoryList* categories = variable.GetCategories();
  const std::int32_t categoryCount = categories == nullptr ? 0 : categories->Size();
  for (std::int32_t code = 0; code < categoryCount; ++code) {
    XMLElement* value = field->AddElement("Value");
    value->AddAttribute("index", IntegerText(code));
    value->AddAttribute("value", varInfo.GetValueText(index, code));
    const std::string& label = categories->GetLabel(code);
    if (!label.empty()) value->AddAttribute("displayValue", label);
    value->AddAttribute("property", "valid");
  }
}

void NPARResultWriter::WriteTests() {
  XMLElement* tests = output->AddElement("NonParametricTests");
  tests->AddAttribute("number", IntegerText(static_cast<std::int64_t>(results.size())));
  tests->AddAttribute("sigLevel", sigLevel);
  tests->AddAttribute("confidenceLevel", confidenceLevel);
  tests->AddAttribute("missingTreatment", analysisMissing ? "analysis" : "listwise");
  for (auto& element : results) tests->Append(element.release());
  results.clear();
}

void NPARResultWriter::WriteFieldInfos() {
  XMLElement* infos = output->AddElement("FieldInfos");
  for (std::int32_t index = 0; index < variables->Size(); ++index) {
    if (index == weightIndex || index == caseIdIndex || !univariates->HasVariable(index)) continue;
    const VariableKind kind = variables->GetVarAt(index)->GetType();
    if (kind == VariableKind::None || kind == VariableKind::Other) continue;
    XMLElement* info = infos->AddElement("FieldInfo");
    info->AddAttribute("varIndex", IntegerText(index));
    if (kind == VariableKind::Continuous) {
      WriteContinuousInfo(*info, index);
    } else {
      WriteCategoricalInfo(*info, index);
    }
  }
}

void NPARResultWriter::WriteContinuousInfo(XMLElement& info, std::int32_t index) const {
  XMLElement* table = AddStructuredTable(info, "ContinuousDistribution");
  AddAttributeRow(*table, "TotalN", univariates->GetTotalWeight(index));
  AddAttributeRow(*table, "Min", univariates->GetMinimum(index));
  AddAttributeRow(*table, "Max", univariates->GetMaximum(index));
  AddAttributeRow(*table, "Mean", univariates->GetMean(index));
  AddAttributeRow(*table, "StdDev", univariates->GetStdDev(index));
  const std::vector<HistogramBin>* bins = univariates->GetBins(index);
  if (bins != nullptr) AddIntervalTableUnlessEmpty(*table, *bins);
}

void NPARResultWriter::WriteCategoricalInfo(XMLElement& info, std::int32_t index) const {
  XMLElement* table = AddStructuredTable(info, "CategoricalDistribution");
  AddAttributeRow(*table, "TotalN", univariates->GetTotalWeight(index));
  std::map<std::int32_t, std::int64_t> frequencies;
  static_cast<void>(univariates->GetFrequencies(index, frequencies));  // none: no table
  std::vector<HistogramBin> bins;
  bins.reserve(frequencies.size());
  for (const auto& [code, frequency] : frequencies) {
    bins.push_back({frequency, static_cast<double>(code)});
  }
  AddIntervalTableUnlessEmpty(*table, bins);
}
