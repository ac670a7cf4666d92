#include "report/algorithm_element.h"

#include "report/elements.h"
#include "report/messages.h"

std::unique_ptr<XMLElement> StartAlgorithm(const NPARTest& test, const AlgorithmHead& head) {
  std::unique_ptr<XMLElement> algorithm(XMLElement::Create("Algorithm"));
  algorithm->AddAttribute("name", std::string(head.name));
  algorithm->AddAttribute("type", head.decidingSig ? "hypothesis_test" : "confidence_interval");
  algorithm->AddAttribute("classification", std::string(head.classification));
  if (head.decidingSig) {
    const bool rejects = test.GetSigLevel() > *head.decidingSig;
    algorithm->AddAttribute("decision",
                            test.HasFailed() ? "unknown" : (rejects ? "reject" : "retain"));
  }
  AddCondition(*algorithm, head.condition.key, head.condition.parameters);
  AddUnknownValues(*algorithm, head.unknownTexts);
  WriteMessages(*algorithm, test.GetMessages());
  return algorithm;
}
