#pragma once

// The component speaks of the platform's types without their versioned namespaces; this is the one
// place that says which version it is built on.

#include "foundation/display.h"
#include "foundation/iterators.h"
#include "foundation/math.h"
#include "foundation/numbers.h"
#include "foundation/progress.h"
#include "foundation/record.h"
#include "foundation/settings.h"
#include "foundation/status.h"
#include "foundation/variables.h"
#include "foundation/xml.h"

using QDCommon_700::ColumnPart;
using QDCommon_700::ICancelSource;
using QDCommon_700::IRecordBlocks;
using QDCommon_700::IRecordColumns;
using QDCommon_700::MultiPassRecordIter;
using QDCommon_700::ProgressListener;
using QDCommon_700::ProgressReport;
using QDCommon_700::QDMV;
using QDCommon_700::QDStatus;
using QDCommon_700::Record;
using QDCommon_700::RecordBlock;
using QDCommon_700::RecordIterator;
using QDCommon_700::TruncateToInt32;
using QDCommon_700::TruncateToInt64;
using QDMath_700::PowerStatus;
using QDMath_700::QDDistFun;
using QDMath_700::QDPower;
using QDXML_700::AppendNumber;
using QDXML_700::IQDSettingValue;
using QDXML_700::IQDVariable;
using QDXML_700::QDCategoryList;
using QDXML_700::QDCatVar;
using QDXML_700::QDSetting;
using QDXML_700::QDSettings;
using QDXML_700::QDVarList;
using QDXML_700::ReplaceSep;
using QDXML_700::SettingKind;
using QDXML_700::StorageKind;
using QDXML_700::VariableKind;
using QDXML_700::XMLElement;
using QDXML_700::XMLString;
