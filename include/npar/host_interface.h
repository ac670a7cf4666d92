/* What a host offers to an analysis component: plain C, for C11 and C++ alike.
 *
 * Every object is a struct whose first member points to a table of functions. A table begins with
 * its own size in bytes; entries are only ever added at the end, so a component that finds a
 * smaller size knows that the later entries are not there. HB_HAS(object, entry) asks exactly that.
 *
 * Every function takes the object first and a pointer to an error code last, and returns an
 * unsigned code: HB_OK (0) for success. A function that fails sets *err to a code of the host's own
 * and leaves its out arguments alone. Texts are UTF-8 and end with a zero byte unless a length is
 * given beside them. All calls of one component come from the thread that called the component.
 * An exception that leaves a function counts as HB_FAILED with the code 240017.
 *
 * Tags at the end of a comment: [host owns] the host keeps the object or text alive for the time
 * that is named, [component releases] the component calls release when it is done, [optional] a
 * host may leave the entry null, [configured] offered from hb_component_configure on, [executing]
 * offered while hb_component_beginExecution runs.
 */
#ifndef NPAR_HOST_INTERFACE_H
#define NPAR_HOST_INTERFACE_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Codes that the functions below return. */
#define HB_OK 0u               /* success */
#define HB_FAILED 1u           /* the host could not do it; *err says why */
#define HB_END_OF_RECORDS 100u /* no further record; *err stays 0 */

/* Types of a delivered message. */
#define HB_MESSAGE_WARNING 2
#define HB_MESSAGE_ERROR 3

/* Does the object's table reach as far as the entry, and is the entry filled? */
#define HB_HAS(object, tableType, entry)                                                   \
  ((object)->table->size >= offsetof(tableType, entry) + sizeof((object)->table->entry) && \
   (object)->table->entry != NULL)

typedef struct HBHost HBHost;
typedef struct HBContext HBContext;
typedef struct HBIterator HBIterator;
typedef struct HBProgress HBProgress;
typedef struct HBContainerFile HBContainerFile;
typedef struct HBContainerStreamKey HBContainerStreamKey;
typedef struct HBXML HBXML;
typedef struct HBWorker HBWorker;

/* An XML document in the host's hands. */
typedef struct HBXMLTable {
  size_t size;
  /* The document's text, `length` bytes and a zero byte. [host owns] until release. */
  uint32_t (*getText)(HBXML* self, const char** text, size_t* length, int32_t* err);
  /* The component needs the document no longer. [optional] */
  uint32_t (*release)(HBXML* self, int32_t* err);
} HBXMLTable;
struct HBXML {
  const HBXMLTable* table;
};

/* Who the host is; each text may be null. [host owns] for the host's life. */
typedef struct HBHostInformation {
  const char* name;
  const char* version;
  const char* copyright;
  const char* vendor;
  const char* serialNumber;
} HBHostInformation;

/* The host as a whole, handed to hb_initialise; it outlives every component. */
typedef struct HBHostTable {
  size_t size;
  /* A host that does not say who it is stays unnamed. [optional] */
  uint32_t (*getInformation)(HBHost* self, HBHostInformation* information, int32_t* err);
} HBHostTable;
struct HBHost {
  const HBHostTable* table;
};

/* Records of doubles, in the order and with the fields of the data model.
 * A missing value of a continuous field is the double HB_MISSING_VALUE, a categorical value is its
 * category's number counted from 0, a missing one -1. A code loses its fraction, and not-a-number
 * is 0; one that is then no category's number, below 0 or too large, is a value without a text: it
 * counts among the field's frequencies, falls into no group, and is no success. */
#define HB_MISSING_VALUE (-0x1.ffffffffffffep+1023)

typedef struct HBIteratorTable {
  size_t size;
  /* Back to before the first record. [optional] beside getColumn */
  uint32_t (*rewind)(HBIterator* self, int32_t* err);
  /* On to the next record; HB_END_OF_RECORDS when there is none. [optional] beside readBlock and
   * getColumn */
  uint32_t (*next)(HBIterator* self, int32_t* err);
  /* One value of the record that stands: *value points to `*valueSize` bytes, a double.
   * [host owns] until the next call of next or rewind. [optional] beside readBlock and getColumn */
  uint32_t (*getValue)(HBIterator* self, size_t fieldIndex, const void** value, size_t* valueSize,
                       int32_t* err);
  /* As many whole records of `fieldCount` doubles as fit `capacity` doubles, from the record after
   * the one that stands; *recordCount is 0 at the end. HB_END_OF_RECORDS says the same, and may
   * come with the last records. Where the entry is there, next and getValue are never called.
   * [optional] */
  uint32_t (*readBlock)(HBIterator* self, double* buffer, size_t capacity, size_t fieldCount,
                        size_t* recordCount, int32_t* err);
  /* Values of one field side by side: *values points to *count of them, 1 at least, the first being
   * that of the record with the number `record`, counted from 0; HB_END_OF_RECORDS behind the last
   * one, with *count 0, as it is before the call, and it may come with the last values too.
   * *isLasting other than 0 lends them: [host owns] until hb_component_beginExecution returns,
   * unchanged, and the component reads them where they stand instead of keeping a copy. Otherwise
   * [host owns] until the next call for the same field. Every field has as many values. Where the
   * entry is there, the others of this table are never called. [optional] */
  uint32_t (*getColumn)(HBIterator* self, size_t fieldIndex, size_t record, const double** values,
                        size_t* count, int32_t* isLasting, int32_t* err);
} HBIteratorTable;
struct HBIterator {
  const HBIteratorTable* table;
};

/* How a run goes. What an entry answers stops nothing. */
typedef struct HBProgressTable {
  size_t size;
  /* How far the whole run has come: `done` of `total`. [optional] [executing] */
  uint32_t (*report)(HBProgress* self, double done, double total, int32_t* err);
  /* A pass over the records begins that `count` tests share, 1 at least; it comes before the report
   * of its start. `tests` are the names of their algorithms in the result document, the one-sample
   * Kolmogorov-Smirnov tests with the distribution behind ("OKolmogorovSmirnovNormal").
   * `orderField` is the field that the records are sorted by, null for the host's own order. The
   * texts are the component's and good for the call only. [optional] [executing] */
  uint32_t (*beginPass)(HBProgress* self, const char* const* tests, size_t count,
                        const char* orderField, int32_t* err);
} HBProgressTable;
struct HBProgress {
  const HBProgressTable* table;
};

/* Names one stream inside a container; null stands for the container's only stream. */
typedef struct HBContainerStreamKeyTable {
  size_t size;
  uint32_t (*getName)(HBContainerStreamKey* self, const char** name, int32_t* err);
} HBContainerStreamKeyTable;
struct HBContainerStreamKey {
  const HBContainerStreamKeyTable* table;
};

/* An output container. */
typedef struct HBContainerFileTable {
  size_t size;
  /* Puts a whole stream. `metadata` is an XML text that names media type and file name:
   * <Metadata><Entry name="mediaType" value="..."/><Entry name="fileName" value="..."/></Metadata>.
   * Both texts are the component's and good for the call only. */
  uint32_t (*putStream)(HBContainerFile* self, HBContainerStreamKey* key, const char* metadata,
                        size_t metadataLength, const char* bytes, size_t length, int32_t* err);
  /* The component is done with the container; the host may publish it. [optional] */
  uint32_t (*close)(HBContainerFile* self, int32_t* err);
} HBContainerFileTable;
struct HBContainerFile {
  const HBContainerFileTable* table;
};

/* A part of a run that another process executes. This component never asks for one. */
typedef struct HBWorkerTable {
  size_t size;
  uint32_t (*getTaskNumber)(HBWorker* self, int32_t* number, int32_t* err);
} HBWorkerTable;
struct HBWorker {
  const HBWorkerTable* table;
};

/* What one component gets from its host; it outlives the component. */
typedef struct HBContextTable {
  size_t size;
  /* The parameter document (schema/parameters.xsd). [component releases] [configured] */
  uint32_t (*getParameters)(HBContext* self, HBXML** document, int32_t* err);
  /* The data model of an input, counted from 0 (schema/datamodel.xsd). While executing it is that
   * of the prepared records: all categories listed, the record counts filled in. [component
   * releases] [configured] */
  uint32_t (*getDataModel)(HBContext* self, uint32_t input, HBXML** document, int32_t* err);
  /* The records of an input. [host owns] until hb_component_endExecution. [executing] */
  uint32_t (*getInputIterator)(HBContext* self, uint32_t input, HBIterator** iterator,
                               int32_t* err);
  /* Codes of what the component asks of its host; this one hands over the single code 21: it wants
   * its execution requirements carried out before a run. [optional] [configured] */
  uint32_t (*setCodes)(HBContext* self, const int32_t* codes, size_t count, int32_t* err);
  /* A number that the host gave out to nobody before; it tells result documents apart. [optional]
   * [executing] */
  uint32_t (*newIdentifier)(HBContext* self, int64_t* identifier, int32_t* err);
  /* The container of that key; `count` is the number of streams that follow.
   * [host owns] until hb_component_endExecution. [executing] */
  uint32_t (*getOutputContainer)(HBContext* self, const char* key, size_t count,
                                 HBContainerFile** container, int32_t* err);
  /* A message of type HB_MESSAGE_WARNING or HB_MESSAGE_ERROR, with its code and parameters, at the
   * moment it arises; a result other than HB_OK ends the component's call with that result. All
   * messages can also be fetched with hb_component_getMessages. [optional] [configured] */
  uint32_t (*deliverMessage)(HBContext* self, int32_t type, int32_t code,
                             const char* const* parameters, size_t parameterCount, int32_t* err);
  /* How many threads a run may use, the calling one among them; 1 where the entry is not there,
   * fails or says 0. The result is the same with any number. The others end before the component's
   * call comes back, and none of them calls the host. [optional] [executing] */
  uint32_t (*getThreadCount)(HBContext* self, uint32_t* count, int32_t* err);
} HBContextTable;
struct HBContext {
  const HBContextTable* table;
};

#ifdef __cplusplus
}
#endif

#endif /* NPAR_HOST_INTERFACE_H */
