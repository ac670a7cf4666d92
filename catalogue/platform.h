#pragma once

#include "catalogue/card.h"

/// What the component's platform says of host and component.
namespace catalogue::platform {

inline constexpr Text kTitle = "Host and component";

inline constexpr Code kNotMade{
    240001, Kind::Error, "the component could not be made",
    "Check that the component and its libraries belong together, and that there is memory left."};
inline constexpr Code kNoVariables{
    240004, Kind::Error, "the fields of the data model cannot be turned into variables",
    "Check the measure, storage and role of each field in the data model."};
inline constexpr Code kNoParameters{
    240010, Kind::Error, "there is no parameter document",
    "Give the parameters of the run, which name its fields and tests."};
inline constexpr Code kUnreadableParameters{
    240011, Kind::Error, "the parameter document cannot be read[: %*]",
    "Correct the document at that place; schema/parameters.xsd describes it."};
inline constexpr Code kNoDataModel{240012, Kind::Error, "there is no data model",
                                   "Give the data model of the input, which lists its fields."};
inline constexpr Code kUnreadableDataModel{
    240013, Kind::Error, "the data model cannot be read[: %*]",
    "Correct the document at that place; schema/datamodel.xsd describes it."};
inline constexpr Code kUnreadableRecords{
    240014, Kind::Error, "the records could not be read to their end[; the host's code is %*]",
    "Check the source of the data; nothing was computed from the records read so far."};
inline constexpr Code kUnknownOperation{
    240015, Kind::Error, "an operation was asked for that the component or the host does not offer",
    "Check that host and component belong together; the host's documents list what it offers."};
inline constexpr Code kBrokenIterator{
    240016, Kind::Error, "the host delivered its records in a form that cannot be read",
    "Check the host: it delivers no more records than asked for, each value a double."};
inline constexpr Code kHostThrew{
    240017, Kind::Error, "the host threw an exception",
    "Check the host: a function of its tables fails by its answer and throws nothing."};
inline constexpr Code kNoRecord{
    240037, Kind::Error, "no record was read",
    "Check that the data hold records, and that not all are dropped for missing values or "
    "weights."};
inline constexpr Code kCodes[] = {
    kNotMade,        kNoVariables,         kNoParameters,      kUnreadableParameters,
    kNoDataModel,    kUnreadableDataModel, kUnreadableRecords, kUnknownOperation,
    kBrokenIterator, kHostThrew,           kNoRecord};

}  // namespace catalogue::platform
