#include "foundation/peer.h"

#include <gmock/gmock.h>
#include <npar/component.h>

#include "support/recording_host.h"

namespace {

using QDHB_700::QDPeer;
using testing::ElementsAre;

/// A component that does nothing but show the base's protected operations.
class Peer final : public QDPeer {
 public:
  explicit Peer(RecordingHost& host) : QDPeer(host.Context(), host.Host()) {}
  using QDPeer::ClearMsgs;
  using QDPeer::CollectMsgs;
  using QDPeer::GetCancelSource;
  using QDPeer::GetDataModelParser;
  using QDPeer::GetHostInformation;
  using QDPeer::ParseDataModel;
  using QDPeer::ScanParameters;
  using QDPeer::SetExeRequirements;
  using QDPeer::SetProgressHandle;

  std::uint32_t BuildModelSettings(const HbHelperV1::XMLDocument& document,
                                   std::int32_t* err) override {
    return QDSettingsFactory::MakeModelSettings(document, settings, err, GetProblemText());
  }
  QDXML_700::QDSettings settings;
};

std::string MessagesOf(QDPeer& peer) {
  std::int32_t err = 0;
  std::size_t needed = 0;
  EXPECT_EQ(peer.GetErrorDetail(nullptr, 0, &needed, &err), NPAR_BUFFER_TOO_SMALL);
  std::string text(needed, '?');
  EXPECT_EQ(peer.GetErrorDetail(text.data(), needed, &needed, &err), HB_OK);
  text.pop_back();
  return text;
}

constexpr char kDeclaration[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

TEST(QDPeer, MessagesAreKeptAndDelivered) {
  RecordingHost host;
  Peer peer(host);
  std::int32_t err = 0;
  EXPECT_EQ(peer.CollectMsgs(2, 5, {"a<b", "\"c\""}, &err), HB_OK);
  host.FailCall("deliverMessage", 1, 42);
  EXPECT_EQ(peer.CollectMsgs(3, 220010, &err), 42u) << "the host's answer";
  EXPECT_THAT(host.messages, ElementsAre(RecordingHost::DeliveredMessage{2, 5, {"a<b", "\"c\""}},
                                         RecordingHost::DeliveredMessage{3, 220010, {}}));
  EXPECT_EQ(MessagesOf(peer), std::string(kDeclaration) +
                                  "<Messages>\n"
                                  "  <Message type=\"warning\" code=\"5\">\n"
                                  "    <Parameter value=\"a&lt;b\" />\n"
                                  "    <Parameter value=\"&quot;c&quot;\" />\n"
                                  "  </Message>\n"
                                  "  <Message type=\"error\" code=\"220010\" />\n"
                                  "</Messages>\n");
  peer.ClearMsgs();
  EXPECT_EQ(MessagesOf(peer), std::string(kDeclaration) + "<Messages />\n");
}

TEST(QDPeer, WhatIsNotOfferedIsRefused) {
  RecordingHost host;
  host.contextTable.size = sizeof(std::size_t);  // a table without any entry
  Peer peer(host);
  std::int32_t err = 0;
  EXPECT_EQ(peer.ScanParameters(&err), HB_FAILED);
  EXPECT_EQ(peer.ParseDataModel(&err, false, 1), HB_FAILED);
  HBIterator* iterator = host.Iterator();
  EXPECT_EQ(peer.GetInputIterator(0, &iterator, &err), HB_FAILED);
  EXPECT_EQ(iterator, nullptr);
  EXPECT_EQ(err, QDHB_700::kNotOffered);
  EXPECT_EQ(peer.GetRecordValue(0, nullptr, nullptr, &err), HB_END_OF_RECORDS);
  EXPECT_EQ(peer.PSMMerge(&err), HB_FAILED);
  EXPECT_EQ(err, QDHB_700::kNotOffered);
}

TEST(QDPeer, RequirementsStandUntilTheNextConfiguration) {
  RecordingHost host;
  Peer peer(host);
  std::int32_t err = 0;
  char buffer[200];
  std::size_t needed = 0;
  EXPECT_EQ(peer.GetExecutionRequirements(buffer, sizeof buffer, &needed, &err),
            NPAR_NOT_CONFIGURED);
  HbHelperV1::XMLDocument document;
  document.addElement("Execution");
  peer.SetExeRequirements(document);
  EXPECT_EQ(peer.GetExecutionRequirements(buffer, sizeof buffer, &needed, &err), HB_OK);
  EXPECT_EQ(buffer, std::string(kDeclaration) + "<Execution />\n");
  static_cast<void>(peer.ScanParameters(&err));
  EXPECT_EQ(peer.GetExecutionRequirements(buffer, sizeof buffer, &needed, &err),
            NPAR_NOT_CONFIGURED);
}

TEST(QDPeer, HostInformationAndProgressPassThrough) {
  RecordingHost host;
  Peer peer(host);
  QDHB_700::QDPeerHostInfo info;
  std::int32_t err = 0;
  EXPECT_EQ(peer.GetHostInformation(info, &err), HB_OK);
  EXPECT_EQ(info.name, "Recording host");
  EXPECT_EQ(info.version, "2.1");
  EXPECT_EQ(info.vendor, "") << "a null text is an empty one";
  EXPECT_EQ(info.serialNumber, "7");
  host.FailCall("getInformation", 1);
  EXPECT_EQ(peer.GetHostInformation(info, &err), HB_FAILED);

  EXPECT_EQ(peer.Report_Progress(30, 100, &err, -1), HB_OK) << "without a handle";
  peer.SetProgressHandle(host.Progress());
  host.FailCall("report", 2, 9);
  EXPECT_EQ(peer.Report_Progress(40, 100, &err, -1), HB_OK);
  EXPECT_EQ(peer.Report_Progress(50, 100, &err, -1), 9u);
  EXPECT_THAT(host.progress, ElementsAre(40.0, 50.0));
}

}  // namespace
