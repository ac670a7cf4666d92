#include "host/analysis/failure.h"

#include <npar/analysis.h>

#include <new>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "catalogue/catalogue.h"
#include "host/analysis/outcome.h"
#include "host/data/input_error.h"
#include "host/messages/messages.h"
#include "host/request/word_list.h"

namespace npar_host {
namespace {

using Json = nlohmann::ordered_json;

std::string RemedyOf(std::int32_t code) {
  const catalogue::ToldCode* const told = catalogue::FindCode(code);
  return told == nullptr ? std::string() : std::string(told->code.remedy);
}

Json TextOrNull(const std::string& text) { return text.empty() ? Json() : Json(text); }

Json MessageOf(const RunMessage& message) {
  return {{"code", message.code},
          {"kind", message.isError ? "error" : "warning"},
          {"parameters", message.parameters},
          {"text", FillMessage(message.code, message.parameters)},
          {"remedy", TextOrNull(RemedyOf(message.code))}};
}

Json ArrayOf(std::span<const RunMessage> messages) {
  Json array = Json::array();
  for (const RunMessage& message : messages) array.push_back(MessageOf(message));
  return array;
}

/// Names may hold what is no UTF-8: that is often what is told.
std::string Dump(const Json& value) {
  return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

/// A text that reads "what; what to do". Names in it are quoted.
Failure Divided(std::uint32_t code, std::string_view text, const std::string& field) {
  std::size_t end = std::string_view::npos;
  bool isQuoted = false;
  for (std::size_t i = 0; i + 1 < text.size(); ++i) {
    if (text[i] == '"') isQuoted = !isQuoted;
    if (!isQuoted && text[i] == ';' && text[i + 1] == ' ') end = i;
  }
  Failure failure{code, field, std::string(text.substr(0, end)), {}, {}};
  if (end != std::string_view::npos) failure.remedy = text.substr(end + 2);
  return failure;
}

Failure Refusal(const RefusedError& error) {
  Failure failure{NPAR_A_REFUSED, {}, error.what(), {}, error.Messages()};
  for (const RunMessage& message : failure.messages) {
    if (!message.isError) continue;
    failure.message += ": " + FillMessage(message.code, message.parameters);
    failure.remedy = RemedyOf(message.code);
    break;
  }
  return failure;
}

Failure MemoryFailure() {
  return {NPAR_A_MEMORY,
          {},
          "there is not enough memory",
          "ask for fewer fields, tests or reports in one run",
          {}};
}

}  // namespace

Failure FailureOf(const std::exception_ptr& exception) {
  try {
    std::rethrow_exception(exception);
  } catch (const UsageError& error) {
    return Divided(NPAR_A_USAGE, error.what(), error.Field());
  } catch (const UserError& error) {
    return Divided(NPAR_A_INPUT, error.what(), error.Field());
  } catch (const StateError& error) {
    return Divided(NPAR_A_STATE, error.what(), {});
  } catch (const CancelledError& error) {
    return {NPAR_A_CANCELLED, {}, error.what(), {}, {}};
  } catch (const RefusedError& error) {
    return Refusal(error);
  } catch (const std::bad_alloc&) {
    return MemoryFailure();
  } catch (const std::length_error&) {
    return MemoryFailure();
  } catch (const std::exception& error) {
    return {NPAR_A_FAULT, {}, error.what(), {}, {}};
  } catch (...) {
    return {NPAR_A_FAULT, {}, "an unknown exception", {}, {}};
  }
}

std::string MessagesJson(std::span<const RunMessage> messages) { return Dump(ArrayOf(messages)); }

std::string FailureJson(const Failure& failure) {
  return Dump({{"code", failure.code},
               {"field", TextOrNull(failure.field)},
               {"message", failure.message},
               {"remedy", TextOrNull(failure.remedy)},
               {"messages", ArrayOf(failure.messages)}});
}

}  // namespace npar_host
