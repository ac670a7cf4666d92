#include <gmock/gmock.h>

#include <atomic>
#include <limits>
#include <memory>
#include <thread>
#include <utility>

#include "support/all_tests_host.h"
#include "support/loaded_component.h"
#include "support/parameters_text.h"
#include "support/schema.h"

namespace {

using Message = RecordingHost::DeliveredMessage;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr char kBinomialTest[] = R"(<Parameters>
  <Parameter name="missingTreatment" value="analysis"/>
  <Parameter name="sigLevel" value="0.05"/>
  <Parameter name="oneSampleVariables"><ListValue><Value value="answer"/></ListValue></Parameter>
  <Parameter name="isAutomaticallyOneSample" value="false"/>
  <Parameter name="OBinomial"><StructuredValue><Attribute name="isSelected" value="true"/></StructuredValue></Parameter>
</Parameters>)";

/// Nine of ten answers are yes.
struct AnswersHost : RecordingHost {
  AnswersHost() {
    parameters = kBinomialTest;
    fields =
        "<Field name='number' measure='continuous'/><Field name='answer' measure='nominal'>"
        "<Value value='yes'/><Value value='no'/></Field>";
    for (int i = 0; i < 10; ++i) records.push_back({i * 1.5, i == 3 ? 1.0 : 0.0});
  }
};

// P(X >= 9) for ten throws of a fair coin: 11 / 2^10, doubled.
constexpr char kExactP[] = "value=\"0.021484375\"";

std::string WithSelection(const std::string& selection, const std::string& more = {}) {
  return "<Parameters>" + selection + more + "</Parameters>";
}

TEST(Exports, NullArgumentsHaveTheirCodes) {
  const LoadedLibrary& library = LoadedLibrary::Instance();
  std::int32_t err = 0;
  std::size_t size = 0;
  std::int32_t number = 0;
  const void* value = nullptr;
  EXPECT_EQ(library.initialise(nullptr), NPAR_NULL_ARGUMENT);
  EXPECT_EQ(library.create(nullptr, nullptr, nullptr, &err), NPAR_NULL_ARGUMENT);
  EXPECT_EQ(library.destroy(nullptr), NPAR_NULL_ARGUMENT);
  EXPECT_EQ(library.configure(nullptr, &err), NPAR_NULL_ARGUMENT);
  EXPECT_EQ(library.getDataModel(nullptr, 0, nullptr, 0, &size, &err), NPAR_NULL_ARGUMENT);
  EXPECT_EQ(library.getExecutionRequirements(nullptr, nullptr, 0, &size, &err), NPAR_NULL_ARGUMENT);
  EXPECT_EQ(library.getIteratorRequirements(nullptr, &number, &number, &number, &err),
            NPAR_NULL_ARGUMENT);
  EXPECT_EQ(library.beginExecution(nullptr, nullptr, &err), NPAR_NULL_ARGUMENT);
  EXPECT_EQ(library.cancelExecution(nullptr, &err), NPAR_NULL_ARGUMENT);
  EXPECT_EQ(library.endExecution(nullptr, &err), NPAR_NULL_ARGUMENT);
  EXPECT_EQ(library.nextRecord(nullptr, &err), NPAR_NULL_ARGUMENT);
  EXPECT_EQ(library.getRecordValue(nullptr, 0, &value, &size, &err), NPAR_NULL_ARGUMENT);
  EXPECT_EQ(library.getMessages(nullptr, nullptr, 0, &size, &err), NPAR_NULL_MESSAGE_ARGUMENT);
  EXPECT_EQ(library.cleanup(), HB_OK);
}

TEST(Exports, ModuleInformationFillsABufferOfExactlyItsLength) {
  const LoadedLibrary& library = LoadedLibrary::Instance();
  RecordingHost host;
  library.initialise(host.Host());
  const std::string expected =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ModuleInformation>\n"
      "  <Module name=\"NPAR\" provider=\"LYRA\" version=\"1.0.0.0\""
      " copyright=\"Copyright (c) Lyra\" />\n</ModuleInformation>\n";
  std::string buffer(expected.size() + 1, '?');
  std::size_t needed = 0;
  std::int32_t err = 0;
  EXPECT_EQ(library.getModuleInformation(buffer.data(), expected.size(), &needed, &err),
            NPAR_BUFFER_TOO_SMALL);
  EXPECT_EQ(needed, expected.size() + 1);
  EXPECT_THAT(buffer, Each('?')) << "left alone";
  EXPECT_EQ(library.getModuleInformation(buffer.data(), needed, &needed, &err), HB_OK);
  EXPECT_STREQ(buffer.c_str(), expected.c_str());
}

TEST(Exports, RunPublishesOneClosedStream) {
  AnswersHost host;
  LoadedComponent component(host);
  ASSERT_EQ(component.Configure(), HB_OK) << component.Messages();
  EXPECT_THAT(host.codes, ElementsAre(21));
  ASSERT_EQ(component.Begin(), HB_OK) << component.Messages();
  ASSERT_EQ(host.containers.size(), 1u);
  EXPECT_EQ(host.containers[0]->key, "StatXML");
  EXPECT_EQ(host.containers[0]->streamCount, 1u);
  EXPECT_TRUE(host.containers[0]->isClosed);
  EXPECT_THAT(host.containers[0]->metadata,
              testing::AllOf(HasSubstr("value=\"application/vnd.lyra.stat+xml\""),
                             HasSubstr("value=\"NPARstatxml.xml\"")));
  EXPECT_THAT(host.Published(), HasSubstr(kExactP));
  EXPECT_THAT(host.Published(), HasSubstr("Recording host"));
  EXPECT_TRUE(IsValid(host.Published(), "statxml-7.0.xsd"));
  EXPECT_EQ(host.OpenDocuments(), 0);
  EXPECT_EQ(component.End(), HB_OK);
  EXPECT_EQ(component.err, 0);
}

TEST(Exports, ComponentRunsAgainAndConfiguresAgain) {
  AnswersHost host;
  host.lastIdentifier = std::numeric_limits<std::int64_t>::max() - 3;
  LoadedComponent component(host);
  ASSERT_EQ(component.Configure(), HB_OK);
  ASSERT_EQ(component.Begin(), HB_OK);
  ASSERT_EQ(component.Begin(), HB_OK) << "without an end in between";
  ASSERT_EQ(component.End(), HB_OK);
  ASSERT_EQ(component.Begin(), HB_OK) << "a further run needs no new configuration";
  ASSERT_EQ(component.End(), HB_OK);
  ASSERT_EQ(host.containers.size(), 3u);
  EXPECT_NE(host.containers[0]->text, host.containers[1]->text);
  EXPECT_THAT(host.containers[2]->text, HasSubstr("modelID=\"9223372036854775807\""))
      << "each run has an identifier of its own, all its bits";

  host.lastIdentifier = 0;
  host.parameters = "<Parameters/>";
  EXPECT_EQ(component.Configure(), NPAR_NOT_CONFIGURED);
  EXPECT_EQ(component.Begin(), NPAR_NOT_CONFIGURED);
  host.parameters = kBinomialTest;
  EXPECT_EQ(component.Configure(), HB_OK);
  EXPECT_EQ(component.Begin(), HB_OK);
  EXPECT_THAT(component.Messages(), Not(HasSubstr("<Message "))) << "those of the last call only";
}

TEST(Exports, SelectionProblemsFailTheConfigurationWithTheirMessage) {
  struct Case {
    const char* catches;
    std::string parameters;
    std::int32_t code;
  };
  const Case kCases[] = {
      {"no list at all", WithSelection(""), 220010},
      {"empty lists", WithSelection(ListParameter("relatedVariables", {})), 220010},
      {"an unknown field", WithSelection(ListParameter("oneSampleVariables", {"a", "z"})), 220011},
      {"an unknown group",
       WithSelection(ListParameter("independentVariables", {"a"}),
                     ListParameter("groupVariable", {"z"})),
       220011},
      {"no group", WithSelection(ListParameter("independentVariables", {"a"})), 220009},
      {"an empty group",
       WithSelection(ListParameter("independentVariables", {"a"}),
                     ListParameter("groupVariable", {})),
       220009},
      {"the weight as a test field", WithSelection(ListParameter("oneSampleVariables", {"a", "w"})),
       220008},
      {"the weight as group",
       WithSelection(ListParameter("independentVariables", {"a"}),
                     ListParameter("groupVariable", {"w"})),
       220008},
  };
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.catches);
    RecordingHost host;
    host.fields = "<Field name='a'/><Field name='b'/><Field name='w' role='frequencyWeight'/>";
    host.parameters = row.parameters;
    LoadedComponent component(host);
    EXPECT_EQ(component.Configure(), NPAR_NOT_CONFIGURED);
    EXPECT_THAT(host.messages, ElementsAre(Message{3, row.code, {}}));
    EXPECT_EQ(component.err, row.code);
    EXPECT_THAT(component.Messages(), HasSubstr("code=\"" + std::to_string(row.code) + "\""));
    EXPECT_EQ(component.Requirements(), "");
    EXPECT_THAT(host.codes, IsEmpty()) << "nothing is announced";
    EXPECT_EQ(component.Begin(), NPAR_NOT_CONFIGURED);
  }
}

TEST(Exports, UnreadableDocumentsFailWithWhereAndWhy) {
  AnswersHost host;
  LoadedComponent component(host);
  host.parameters = "<Parameters>\n<Parametre/></Parameters>";
  EXPECT_EQ(component.Configure(), NPAR_NOT_CONFIGURED);
  EXPECT_EQ(component.err, 240011);
  host.parameters = kBinomialTest;
  host.modelText = "<DataModel>";
  EXPECT_EQ(component.Configure(), NPAR_NOT_CONFIGURED);
  EXPECT_EQ(component.err, 240013);
  host.modelText = "<DataModel/>";
  EXPECT_EQ(component.Configure(), NPAR_FAILED);
  EXPECT_EQ(component.err, 240004);
  EXPECT_THAT(host.messages,
              ElementsAre(Message{3, 240011, {"line 2, column 1: unknown element 'Parametre'"}},
                          Message{3, 240013, {"line 1, column 11: Start-end tags mismatch"}},
                          Message{3, 240004, {}}));
}

TEST(Exports, DataModelOfTheRunMustCarryItsCounts) {
  AnswersHost host;
  host.modelText = "<DataModel>" + host.fields + "</DataModel>";
  LoadedComponent component(host);
  ASSERT_EQ(component.Configure(), HB_OK);
  EXPECT_EQ(component.Begin(), NPAR_FAILED);
  EXPECT_THAT(
      host.messages,
      ElementsAre(Message{3, 240013, {"line 1, column 1: attribute 'recordCount' is missing"}}));
}

TEST(Exports, RunWithoutRecordsReports240037AndAsksForNoContainer) {
  AnswersHost host;
  host.records.clear();
  LoadedComponent component(host);
  ASSERT_EQ(component.Configure(), HB_OK);
  EXPECT_EQ(component.Begin(), NPAR_FAILED);
  EXPECT_EQ(component.err, 240037);
  EXPECT_THAT(host.messages, ElementsAre(Message{3, 240037, {}}));
  EXPECT_EQ(host.CallCount("getOutputContainer"), 0);
}

TEST(Exports, EveryHostCallThatFailsOrThrowsFailsTheRunWithNothingPublished) {
  struct Case {
    const char* entry;
    std::uint32_t configured;
    std::uint32_t begun;
    std::vector<Message> messages;
  };
  const std::vector<std::string> kItsCode = {"its code"};
  const Case kCases[] = {
      {"getParameters", NPAR_NOT_CONFIGURED, HB_OK, {{3, 240010, {}}}},
      {"getDataModel", NPAR_NOT_CONFIGURED, HB_OK, {{3, 240012, {}}}},
      {"setCodes", 55, HB_OK, {}},
      {"getInputIterator", HB_OK, NPAR_NULL_ARGUMENT, {}},
      {"rewind", HB_OK, NPAR_FAILED, {{3, 240014, kItsCode}}},
      {"readBlock", HB_OK, NPAR_FAILED, {{3, 240014, kItsCode}}},
      {"getOutputContainer", HB_OK, 55, {}},
      {"putStream", HB_OK, 55, {}},
      {"getInformation", HB_OK, HB_OK, {}},  // an unnamed host is served all the same
      {"newIdentifier", HB_OK, HB_OK, {}},
      {"report", HB_OK, HB_OK, {}},
      {"release", HB_OK, HB_OK, {}},
      {"close", HB_OK, HB_OK, {}},
  };
  for (const Case& row : kCases) {
    for (const bool throws : {false, true}) {
      SCOPED_TRACE(std::string(row.entry) + (throws ? " throws" : ""));
      const std::uint32_t answer = throws ? HB_FAILED : 55;
      const std::int32_t itsCode = throws ? 240017 : RecordingHost::kHostError;
      const auto resultOf = [answer](std::uint32_t result) {
        return result == 55 ? answer : result;
      };
      AnswersHost host;
      LoadedComponent component(host);
      host.FailCall(row.entry, 1, throws ? RecordingHost::kThrows : 55);
      const std::uint32_t configured = component.Configure();
      EXPECT_EQ(configured, resultOf(row.configured));
      if (configured == HB_OK) {
        EXPECT_EQ(component.Begin(), resultOf(row.begun));
        EXPECT_EQ(host.Published().empty(), row.begun != HB_OK);
      }
      std::vector<Message> messages = row.messages;
      for (Message& message : messages) {
        if (message.parameters == kItsCode) message.parameters = {std::to_string(itsCode)};
      }
      EXPECT_EQ(host.messages, messages);
      const bool isServed = row.configured == HB_OK && row.begun == HB_OK;
      EXPECT_EQ(component.err, isServed ? 0 : messages.empty() ? itsCode : messages.back().code);

      EXPECT_EQ(component.Configure(), HB_OK) << "the same component serves on";
      EXPECT_EQ(component.Begin(), HB_OK);
      EXPECT_THAT(host.containers.back()->text, HasSubstr(kExactP));
    }
  }
}

TEST(Exports, OlderTablesAreServedAsFarAsTheyReach) {
  AnswersHost host;
  host.contextTable.size = offsetof(HBContextTable, deliverMessage);
  host.iteratorTable.size = offsetof(HBIteratorTable, readBlock);
  host.xmlTable.size = offsetof(HBXMLTable, release);
  host.hostTable.size = offsetof(HBHostTable, getInformation);
  host.progressTable.size = offsetof(HBProgressTable, report);
  host.containerTable.size = offsetof(HBContainerFileTable, close);
  LoadedComponent component(host);
  ASSERT_EQ(component.Configure(), HB_OK);
  ASSERT_EQ(component.Begin(), HB_OK) << component.Messages();
  EXPECT_THAT(host.containers.at(0)->text, HasSubstr(kExactP));
  for (const char* entry : {"deliverMessage", "readBlock", "release", "getInformation", "report",
                            "beginPass", "close"}) {
    EXPECT_EQ(host.CallCount(entry), 0) << entry;
  }
  // With one entry less there is no way to publish.
  host.contextTable.size = offsetof(HBContextTable, getOutputContainer);
  EXPECT_EQ(component.Begin(), NPAR_NO_HELPER);
}

TEST(Exports, RecordsByBlocksNeedNoOtherRoad) {
  AnswersHost host;
  host.iteratorTable.next = nullptr;
  host.iteratorTable.getValue = nullptr;
  LoadedComponent component(host);
  EXPECT_EQ(component.ConfigureAndRun(), HB_OK) << component.Messages();
}

TEST(Exports, ColumnsNeedNoOtherRoadAndAreOfOneLength) {
  for (const bool areLasting : {false, true}) {
    AnswersHost host;
    host.OfferColumns(areLasting);
    host.iteratorTable.rewind = nullptr;
    host.iteratorTable.readBlock = nullptr;
    LoadedComponent component(host);
    EXPECT_EQ(component.ConfigureAndRun(), HB_OK) << component.Messages();
    EXPECT_THAT(host.containers.back()->text, HasSubstr(kExactP));
  }
  AnswersHost host;
  host.iteratorTable.getColumn = [](HBIterator*, std::size_t field, std::size_t record,
                                    const double** values, std::size_t* count, std::int32_t*,
                                    std::int32_t*) -> std::uint32_t {
    static constexpr double kValues[3] = {1, 2, 3};
    const std::size_t size = field == 0 ? 2 : 3;
    if (record >= size) return HB_END_OF_RECORDS;
    *values = kValues + record;
    *count = size - record;
    return HB_OK;
  };
  LoadedComponent component(host);
  EXPECT_EQ(component.ConfigureAndRun(), NPAR_FAILED);
  EXPECT_THAT(host.messages, ElementsAre(Message{3, 240014, {"240016"}}));
}

TEST(Exports, CancelBeforeTheRunIsNotLost) {
  const LoadedLibrary& library = LoadedLibrary::Instance();
  AnswersHost host;
  LoadedComponent component(host);
  const auto cancel = [&] {
    EXPECT_EQ(library.cancelExecution(component.Handle(), nullptr), HB_OK);
  };
  cancel();
  ASSERT_EQ(component.Configure(), HB_OK);
  EXPECT_EQ(component.Begin(), HB_OK) << "forgotten by the configuration";
  cancel();
  EXPECT_EQ(component.Begin(), NPAR_FAILED);
  EXPECT_THAT(host.messages, ElementsAre(Message{3, 1, {}}));
  EXPECT_EQ(component.err, 1);
  EXPECT_EQ(component.Begin(), HB_OK) << "it was for that run alone";
  cancel();
  EXPECT_EQ(component.End(), HB_OK);
  EXPECT_EQ(component.Begin(), HB_OK) << "it was for a run that has ended";
}

TEST(Exports, CallsThatWouldPullTheGroundFromUnderACallInHandAreRefused) {
  const LoadedLibrary& library = LoadedLibrary::Instance();
  AnswersHost host;
  LoadedComponent component(host);
  int refused = 0;
  const auto tryAll = [&] {
    std::int32_t err = 0;
    std::size_t needed = 0;
    EXPECT_EQ(component.Configure(), NPAR_BUSY);
    EXPECT_EQ(component.Begin(), NPAR_BUSY);
    EXPECT_EQ(component.End(), NPAR_BUSY);
    EXPECT_EQ(library.destroy(component.Handle()), NPAR_BUSY);
    EXPECT_EQ(library.getMessages(component.Handle(), nullptr, 0, &needed, &err),
              NPAR_BUFFER_TOO_SMALL)
        << "queries are answered";
    ++refused;
  };
  host.onRecords = tryAll;
  host.onProgress = [&](double) { tryAll(); };
  host.onMessage = tryAll;
  EXPECT_EQ(component.ConfigureAndRun(), HB_OK) << component.Messages();
  EXPECT_THAT(host.Published(), HasSubstr(kExactP));
  host.parameters = "<Parameters/>";
  const int before = std::exchange(refused, 0);
  EXPECT_EQ(component.Configure(), NPAR_NOT_CONFIGURED);
  EXPECT_GT(before, 3);
  EXPECT_EQ(refused, 1);
}

TEST(Exports, TwoComponentsRunInTwoThreads) {
  AllTestsHost hosts[2];
  std::unique_ptr<LoadedComponent> components[2];
  for (int i = 0; i < 2; ++i) components[i] = std::make_unique<LoadedComponent>(hosts[i]);
  const auto run = [&](int i) {
    for (int repeat = 0; repeat < 5; ++repeat) {
      EXPECT_EQ(components[i]->ConfigureAndRun(), HB_OK) << components[i]->Messages();
    }
  };
  std::thread other(run, 1);
  run(0);
  other.join();
  EXPECT_EQ(hosts[0].Published(), hosts[1].Published());
}

TEST(Exports, ACancelFromAnotherThreadEndsTheRun) {
  AllTestsHost host;
  LoadedComponent component(host);
  ASSERT_EQ(component.Configure(), HB_OK);
  // Relaxed, so that they order nothing else between the two threads.
  std::atomic<bool> isReading = false;
  std::atomic<bool> isCancelled = false;
  host.onRecords = [&] {
    isReading.store(true, std::memory_order_relaxed);
    while (!isCancelled.load(std::memory_order_relaxed)) std::this_thread::yield();
  };
  std::thread other([&] {
    while (!isReading.load(std::memory_order_relaxed)) std::this_thread::yield();
    std::int32_t err = 0;
    LoadedLibrary::Instance().cancelExecution(component.Handle(), &err);
    isCancelled.store(true, std::memory_order_relaxed);
  });
  EXPECT_NE(component.Begin(), HB_OK);
  other.join();
  ASSERT_FALSE(host.messages.empty());
  EXPECT_EQ(host.messages.back(), (Message{3, 1, {}}));  // after warnings of the fields
  EXPECT_EQ(host.Published(), "");
}

TEST(Exports, ProgressGoesUpFrom25To90) {
  AnswersHost host;
  LoadedComponent component(host);
  ASSERT_EQ(component.Configure(), HB_OK);
  ASSERT_EQ(component.Begin(), HB_OK);
  ASSERT_THAT(host.progress, Not(IsEmpty()));
  EXPECT_TRUE(std::is_sorted(host.progress.begin(), host.progress.end()));
  EXPECT_GE(host.progress.front(), 25.0);
  EXPECT_LE(host.progress.back(), 90.0);
  EXPECT_THAT(host.passes, ElementsAre("OBinomial"));
  host.progressTable.size = offsetof(HBProgressTable, beginPass);
  ASSERT_EQ(component.Begin(), HB_OK) << "a host that was built before passes were told";
  EXPECT_EQ(host.CallCount("beginPass"), 1);
  ASSERT_EQ(LoadedLibrary::Instance().beginExecution(component.Handle(), nullptr, &component.err),
            HB_OK)
      << "without a progress handle";
}

TEST(Exports, QueriesAnswerForAComponentWithOneInputAndNoOutputRecords) {
  const LoadedLibrary& library = LoadedLibrary::Instance();
  AnswersHost host;
  LoadedComponent component(host);
  ASSERT_EQ(component.Configure(), HB_OK);
  std::int32_t inputs = 0;
  std::int32_t passes = 0;
  std::int32_t order = 7;
  EXPECT_EQ(
      library.getIteratorRequirements(component.Handle(), &inputs, &passes, &order, &component.err),
      HB_OK);
  EXPECT_EQ(inputs, 1);
  EXPECT_EQ(passes, NPAR_READ_REPEATEDLY);
  EXPECT_EQ(order, NPAR_STORED_ORDER);
  char buffer[100];
  std::size_t needed = 0;
  EXPECT_EQ(
      library.getDataModel(component.Handle(), 0, buffer, sizeof buffer, &needed, &component.err),
      HB_OK);
  EXPECT_STREQ(buffer, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<DataModel />\n");
  EXPECT_EQ(library.nextRecord(component.Handle(), &component.err), HB_END_OF_RECORDS);
}

TEST(Exports, AbsentErrorCodeIsNoReasonToFail) {
  const LoadedLibrary& library = LoadedLibrary::Instance();
  AnswersHost host;
  LoadedComponent component(host);
  EXPECT_EQ(library.configure(component.Handle(), nullptr), HB_OK);
  EXPECT_EQ(library.beginExecution(component.Handle(), nullptr, nullptr), HB_OK);
  EXPECT_EQ(library.endExecution(component.Handle(), nullptr), HB_OK);
}

}  // namespace
