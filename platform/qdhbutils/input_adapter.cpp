#include "qdhbutils/data_model.h"

namespace QDHB_700 {

using QDXML_700::VariableKind;
using QDXML_700::VariableRole;

InputAdapter::InputAdapter(HbHelperV1::DataHelper* dataHelper, const DataModelParser* parser,
                           bool binFields, bool changeDirection, bool skipUnfit, bool listWeight,
                           bool takeCounts)
    : dataHelper(dataHelper),
      parser(parser),
      binFields(binFields),
      changeDirection(changeDirection),
      skipUnfit(skipUnfit),
      listWeight(listWeight),
      takeCounts(takeCounts) {}

InputAdapter::~InputAdapter() = default;

bool InputAdapter::BuildVarlist(std::int32_t* err) {
  variables = QDXML_700::QDVarList();
  if (changeDirection) ChangeFieldDirection();
  SetFieldIndexVector();
  if (!IsValidFields()) {
    *err = kBadDataModel;
    return false;
  }
  if (binFields) SetFieldsBinningParameter();
  for (const std::size_t index : fieldOfVariable) {
    const DataModelParser::Model::Field& field = parser->model->fields[index];
    const VariableRole role = field.role.value_or(VariableRole::Input);
    const auto fieldIndex = static_cast<std::int32_t>(index);
    if (field.kind == VariableKind::Continuous || field.kind == VariableKind::Other) {
      variables.Add(std::make_unique<QDXML_700::QDContVar>(field.name, field.label, field.kind,
                                                           field.storage, role, fieldIndex));
    } else {
      variables.Add(std::make_unique<QDXML_700::QDCatVar>(field.name, field.label, field.kind,
                                                          field.storage, role, fieldIndex,
                                                          field.isOrdinal, field.categories));
    }
  }
  if (takeCounts) variables.SetCounts(parser->model->counts);
  return true;
}

std::size_t InputAdapter::FieldCount() const { return parser->FieldCount(); }

std::uint32_t InputAdapter::GetValues(double* buffer, std::size_t capacity,
                                      std::size_t* recordCount, std::int32_t* err) {
  const std::size_t width = fieldOfVariable.size();
  const std::size_t fieldCount = FieldCount();
  // The list keeps the fields' order, so as many variables as fields means each in its place.
  if (width == fieldCount) return GetRawValues(buffer, capacity, recordCount, err);

  rawBuffer.resize(capacity / width * fieldCount);
  const std::uint32_t result = GetRawValues(rawBuffer.data(), rawBuffer.size(), recordCount, err);
  if (result != HB_OK) return result;
  const double* raw = rawBuffer.data();
  for (std::size_t record = 0; record < *recordCount; ++record, raw += fieldCount) {
    for (const std::size_t field : fieldOfVariable) *buffer++ = raw[field];
  }
  return HB_OK;
}

std::uint32_t InputAdapter::GetRawValues(double* buffer, std::size_t capacity,
                                         std::size_t* recordCount, std::int32_t* err) {
  return dataHelper->ReadBlock(buffer, capacity, FieldCount(), recordCount, err);
}

bool InputAdapter::IsValidFields() const { return !fieldOfVariable.empty(); }

void InputAdapter::SetFieldIndexVector() {
  fieldOfVariable.clear();
  for (std::size_t field = 0; field < FieldCount(); ++field) {
    const bool isWeight = parser->model->fields[field].role == VariableRole::FrequencyWeight;
    if (isWeight ? AddFrequencyWeightToVarlist(field) : CanAddToVarList(field)) {
      fieldOfVariable.push_back(field);
    }
  }
}

bool InputAdapter::CanAddToVarList(std::size_t field) const {
  const DataModelParser::Model::Field& model = parser->model->fields[field];
  if (skipUnfit && model.kind == VariableKind::Other) return false;
  return listAllRoles || model.role.has_value();
}

void InputAdapter::SetFieldsBinningParameter() {}

bool InputAdapter::AddFrequencyWeightToVarlist(std::size_t) { return listWeight; }

void InputAdapter::ChangeFieldDirection() { listAllRoles = true; }

}  // namespace QDHB_700
