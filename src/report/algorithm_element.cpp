#include "report/algorithm_element.h"

#include "report/elements.h"

namespace {

const char* ClassificationOf(catalogue::Family family) {
  switch (family) {
    case catalogue::Family::OneSample:
      return "One_Sample";
    case catalogue::Family::Related:
      return "Related_Samples";
    case catalogue::Family::Independent:
      break;
  }
  return "Independent_Samples";
}

const char* DecisionWord(const NPARTest& test, double p) {
  if (test.HasFailed()) return "unknown";
  return test.GetSigLevel() > p ? "reject" : "retain";
}

}  // namespace

std::unique_ptr<XMLElement> StartAlgorithm(const NPARTest& test, const AlgorithmHead& head) {
  const bool decides = head.card.purpose == catalogue::Purpose::HypothesisTest;
  std::unique_ptr<XMLElement> algorithm(XMLElement::Create("Algorithm"));
  algorithm->AddAttribute("name", head.card.element.c_str());
  algorithm->AddAttribute("type", decides ? "hypothesis_test" : "confidence_interval");
  algorithm->AddAttribute("classification", ClassificationOf(catalogue::Family(head.card.family)));
  if (decides) algorithm->AddAttribute("decision", DecisionWord(test, head.decidingSig));
  AddCondition(*algorithm, head.condition.key, head.condition.parameters);
  AddUnknownValues(*algorithm, head.unknownTexts);
  if (test.HasFailed() || !head.messagesLast) WriteMessages(*algorithm, test.GetMessages());
  return algorithm;
}
