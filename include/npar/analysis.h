/* Nonparametric tests for programs that have columns and want results: plain C, for C11 and C++
 * alike. libnparhost.so holds host and component; it reads no file and loads no other library.
 *
 * An analysis is asked for with npar_analysis_set, gets data with npar_analysis_read_stream or
 * npar_analysis_add_column, in either order, runs, and gives its results. What was set stays; the
 * data are used up by a run, so that a further run begins with data. Records that stand on many
 * machines are summed there, piece by piece, with npar_analysis_sum_piece.
 *
 * Functions that may fail return NPAR_A_OK (0) or a code from below, and leave their out arguments
 * alone then; npar_analysis_error tells what was wrong. No function throws. Texts are UTF-8 and end
 * with a zero byte. Messages name options as the command line does, "--by".
 *
 * Threads: different analyses may be used by different threads at a time. Calls of one analysis
 * come one after the other, except npar_analysis_cancel: a second one, such as a progress
 * function's, is NPAR_A_STATE and leaves the error text alone.
 *
 * Tags: [analysis owns] good until the call that is named or npar_analysis_destroy, [caller owns]
 * stays the caller's, who keeps it for the time that is named.
 */
#ifndef NPAR_ANALYSIS_H
#define NPAR_ANALYSIS_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The Arrow C data interface and the Arrow C stream interface, which every header that uses them
 * repeats (https://arrow.apache.org/docs/format/CDataInterface.html). */
#ifndef ARROW_C_DATA_INTERFACE
#define ARROW_C_DATA_INTERFACE

#define ARROW_FLAG_DICTIONARY_ORDERED 1
#define ARROW_FLAG_NULLABLE 2
#define ARROW_FLAG_MAP_KEYS_SORTED 4

struct ArrowSchema {
  const char* format;
  const char* name;
  const char* metadata;
  int64_t flags;
  int64_t n_children;
  struct ArrowSchema** children;
  struct ArrowSchema* dictionary;
  void (*release)(struct ArrowSchema*);
  void* private_data;
};

struct ArrowArray {
  int64_t length;
  int64_t null_count;
  int64_t offset;
  int64_t n_buffers;
  int64_t n_children;
  const void** buffers;
  struct ArrowArray** children;
  struct ArrowArray* dictionary;
  void (*release)(struct ArrowArray*);
  void* private_data;
};

#endif /* ARROW_C_DATA_INTERFACE */

#ifndef ARROW_C_STREAM_INTERFACE
#define ARROW_C_STREAM_INTERFACE

struct ArrowArrayStream {
  int (*get_schema)(struct ArrowArrayStream*, struct ArrowSchema* out);
  int (*get_next)(struct ArrowArrayStream*, struct ArrowArray* out);
  const char* (*get_last_error)(struct ArrowArrayStream*);
  void (*release)(struct ArrowArrayStream*);
  void* private_data;
};

#endif /* ARROW_C_STREAM_INTERFACE */

#define NPAR_A_OK 0u
#define NPAR_A_CANCELLED 1u /* npar_analysis_cancel stopped the run */
#define NPAR_A_USAGE 2u     /* the request: an option, a value, a field that the data do not have */
#define NPAR_A_INPUT 3u     /* the data: a type, a value, lengths that do not fit */
#define NPAR_A_REFUSED 4u   /* the component refused the run; its messages say why */
#define NPAR_A_MEMORY 5u    /* memory ran out */
#define NPAR_A_STATE 6u     /* calls out of order: a run without data, a result without a run */
#define NPAR_A_FAULT 7u     /* a fault of this library */

typedef struct NparAnalysis NparAnalysis;

/* Stores a new analysis in *analysis; NPAR_A_USAGE for null, NPAR_A_MEMORY. */
uint32_t npar_analysis_create(NparAnalysis** analysis);
/* Frees it with all that it owns; null does nothing. Not while a call of it is under way. */
void npar_analysis_destroy(NparAnalysis* analysis);

/* Sets an option of `npar analyse` by its name without dashes. These add one plain field name a
 * call, without separators, patterns or escapes: one-sample, related, independent, continuous,
 * nominal, ordinal. The option test adds a test a call, "NAME[:key=value,..]" as on the command
 * line (docs/npar.1; npar_catalogue lists names and options). These take one value, the last one
 * set: by, weight, case-id (a field name, empty for none), missing (analysis or listwise),
 * significance, confidence (percent, or a proportion below 1), adjust and adjust-pairs (none,
 * bonferroni, holm, bh), threads (0 or the most that a run may use; the default 0 leaves it to the
 * library), extended, ascii and sentences (true or false; extended is true by default, the others
 * concern the text report). NPAR_A_USAGE for another option and a value that the option can't take;
 * whether all of it fits together and with the data is seen at the run. */
uint32_t npar_analysis_set(NparAnalysis* analysis, const char* option, const char* value);

/* Makes the field ordinal with these categories, ascending; others of the data come last. A number
 * is a category by any text that spells it. */
uint32_t npar_analysis_order(NparAnalysis* analysis, const char* field,
                             const char* const* categories, size_t count);

/* Takes the records of a stream whose schema is a struct, its children being the columns. The
 * stream is used up and released, whatever is answered; its batches are held, not copied, until a
 * run or npar_analysis_destroy releases them. Only columns that the request names are read.
 *
 * Numbers are integers and floats of every width, decimals, dates (days since 1970-01-01), times
 * (seconds since midnight), timestamps (seconds since 1970-01-01 00:00 UTC, the zone only says how
 * they are shown) and durations (seconds). An integer of 64 bits must be one that a double holds
 * exactly. Texts are utf8, large utf8 and utf8 views; true and false are the texts "true" and
 * "false". A dictionary holds any of these. Nulls, and floats that are not a number, are missing;
 * the null type is a column of missing numbers. All else is NPAR_A_INPUT, with column and type.
 *
 * Where no option says what a field is, numbers are continuous (nominal, where they are no more
 * than two different ones and no test needs them otherwise), texts and dictionaries nominal, and
 * so is the field of "by"; an ordered dictionary is ordinal in its order. Entries of a dictionary
 * that no record has are no categories, but in an ordered one that is not the field of "by".
 *
 * NPAR_A_STATE where the analysis has data already, NPAR_A_INPUT where the stream fails. */
uint32_t npar_analysis_read_stream(NparAnalysis* analysis, struct ArrowArrayStream* stream);

/* A column as arrays in memory. Formats are those of the Arrow C data interface: "c" "C" "s" "S"
 * "i" "I" "l" "L" integers of 8 to 64 bits, small letters signed; "e" "f" "g" floats of 16 to 64
 * bits; "b" a bitmap of truth values; "tdD", "tsn:" and their like times; "u" and "U" texts. */
typedef struct NparColumn {
  size_t size; /* sizeof(NparColumn): members are only ever added at the end */
  const char* name;
  const char* format; /* of the values; with a dictionary that of the indices, an integer's */
  int64_t length;     /* records */
  /* A bit for each record, the first one lowest, set where there is a value; null: everywhere. */
  const uint8_t* validity;
  const void* values;  /* `length` values or indices; of texts their bytes, one after the other */
  const void* offsets; /* of texts: `length` + 1 ascending offsets, int32_t for "u", int64_t for
                          "U"; null otherwise */
  const struct NparColumn* dictionary; /* the entries that the values are indices of, or null */
  int32_t ordered;                     /* not 0: the dictionary is in the order of its meaning */
} NparColumn;

/* Adds a column; all have the same length. The struct, its name and format are copied; the arrays
 * and the dictionary stay [caller owns] until npar_analysis_run has returned. NPAR_A_INPUT for a
 * column that can't be one, or of another length than those before; NPAR_A_STATE beside a stream.
 */
uint32_t npar_analysis_add_column(NparAnalysis* analysis, const NparColumn* column);

/* Rank tests of records that are sorted in pieces, wherever these stand. Each piece goes as data
 * into an analysis with the same options, which sums it in whole numbers; one analysis takes the
 * sums in the order of the pieces, and its run makes of them the figures that all records together
 * have, to the last digit where their sums of ranks stay below 2^52.
 *
 * Served are, for one field of "independent", mann-whitney, kruskal-wallis and jonckheere-terpstra
 * (both also compare=pairwise) and ks-two-sample of records that ascend by this field; for two
 * fields of "related", wilcoxon-pairs of records that ascend by the size of the difference of both;
 * for one field of "one-sample", wilcoxon:median=M of records that ascend by the distance from M,
 * and ks-normal, ks-uniform, ks-poisson and ks-exponential of records that ascend by the field.
 * Records with a missing value may stand anywhere, and the cut between two pieces may lie anywhere,
 * also between equal values. Groups stand in the order of npar_analysis_order, or else numbers
 * ascending and texts by their bytes. The results have no medians, distributions and exact values
 * given ties, and no result document; each test of the JSON form tells how it was "made". */

/* Sums the data, in place of a run, and uses them up. *sums has *length bytes, [analysis owns]
 * until its next call; they are the same on every machine, and for this version of the library
 * alone. NPAR_A_USAGE for a request that sums do not serve, NPAR_A_INPUT for records that do not
 * ascend. */
uint32_t npar_analysis_sum_piece(NparAnalysis* analysis, const void** sums, size_t* length);
/* Takes the sums of the piece that follows those taken so far; [caller owns] the bytes. The run
 * that follows is made of them. NPAR_A_INPUT for bytes that are no sums, for those of another
 * request and for a piece that begins below the end of the one before; NPAR_A_STATE beside data. */
uint32_t npar_analysis_add_sums(NparAnalysis* analysis, const void* sums, size_t length);
/* Some tests (those whose names begin with ks-) see the pieces twice. Once the sums of all are
 * taken, this gives what a second pass begins with, [analysis owns] until its next call, or a
 * *length of 0 where the sums are enough; the sums of that pass then replace those of the first. */
uint32_t npar_analysis_next_pass(NparAnalysis* analysis, const void** pass, size_t* length);
/* The data that npar_analysis_sum_piece takes next are the piece of that number, from 0, in the
 * second pass; [caller owns] the bytes. The piece has the same records as in the first pass, or it,
 * or npar_analysis_add_sums, is NPAR_A_INPUT. */
uint32_t npar_analysis_begin_pass(NparAnalysis* analysis, const void* pass, size_t length,
                                  size_t piece);

/* How far a run has come, `done` of `total`; called on the thread of npar_analysis_run. To stop the
 * run, call npar_analysis_cancel. */
typedef void (*NparProgress)(double done, double total, void* user);

/* Runs what was asked for on the data and keeps the results; those of a run before are gone.
 * `progress` may be null; `user` is handed on to it. */
uint32_t npar_analysis_run(NparAnalysis* analysis, NparProgress progress, void* user);

/* Asks the run under way to stop, or the next one if there is none: it then answers
 * NPAR_A_CANCELLED. From any thread. */
void npar_analysis_cancel(NparAnalysis* analysis);

/* The results of the last run in a form: "document" (the result document, XML), "json", "text",
 * "html", "markdown", "latex" or "csv", as the reports of `npar analyse`; "tests", the array of
 * that name in the JSON report, without the bins of distributions; "figures", of each of these the
 * name, kind, decision, significance and statistic alone, in a fraction of the time; "notes", a
 * JSON array of the sentences that the command line says on how it takes the data; or "messages",
 * those of the component on the run as a whole, as npar_analysis_error has them. Made when it is
 * first asked for. *text has *length bytes and a zero byte, [analysis owns] until the next
 * npar_analysis_run. NPAR_A_STATE without results, NPAR_A_USAGE for another form. `length` may be
 * null. */
uint32_t npar_analysis_result(NparAnalysis* analysis, const char* form, const char** text,
                              size_t* length);

/* The last failure as JSON:
 * {"code": 2, "field": "x", "message": "...", "remedy": "...", "messages":
 *  [{"code": 220010, "kind": "error", "parameters": ["..."], "text": "...", "remedy": "..."}]}
 * `code` is that of the function that failed, 0 without a failure; `field` and `remedy` are null
 * where there is none to tell; `messages` are the component's. Never null; for a null analysis,
 * such as one that could not be created, it speaks of that. [analysis owns] until its next call. */
const char* npar_analysis_error(const NparAnalysis* analysis);

/* What is known of every test, as `npar tests --json` prints it, for the life of the process; null
 * where memory ran out. `length` may be null. */
const char* npar_catalogue(size_t* length);

/* "1.0.0", for the life of the process. */
const char* npar_version(void);

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* NPAR_ANALYSIS_H */
