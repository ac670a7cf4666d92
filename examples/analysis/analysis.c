/* An analysis of columns in memory: a stream of Arrow arrays in, a p-value out.
 *
 *     cc -std=c11 -I include examples/analysis/analysis.c -o example_analysis -lnparhost
 *
 * The data: hours of sleep that ten patients gained with each of two drugs. Cushny and Peebles
 * (1905), The action of optical isomers II: hyoscines, Journal of Physiology 32, 501-510.
 */
#include <npar/analysis.h>
#include <stdio.h>
#include <string.h>

enum { kRecords = 10, kColumns = 2 };
static const double kDrug1[kRecords] = {0.7, -1.6, -0.2, -1.2, -0.1, 3.4, 3.7, 0.8, 0.0, 2.0};
static const double kDrug2[kRecords] = {1.9, 0.8, 1.1, 0.1, -0.1, 4.4, 5.5, 1.6, 4.6, 3.4};

/* A stream with one batch. These arrays live as long as the program: to release them is to say so.
 */
static void ReleaseSchema(struct ArrowSchema* schema) { schema->release = NULL; }
static void ReleaseArray(struct ArrowArray* array) { array->release = NULL; }
static void ReleaseStream(struct ArrowArrayStream* stream) { stream->release = NULL; }

static int GetSchema(struct ArrowArrayStream* stream, struct ArrowSchema* out) {
  static struct ArrowSchema drugs[kColumns] = {{.format = "g", .name = "drug1"},
                                               {.format = "g", .name = "drug2"}};
  static struct ArrowSchema* columns[kColumns] = {&drugs[0], &drugs[1]};
  (void)stream;
  *out = (struct ArrowSchema){
      .format = "+s", .n_children = kColumns, .children = columns, .release = ReleaseSchema};
  return 0;
}

static int GetNext(struct ArrowArrayStream* stream, struct ArrowArray* out) {
  static const void* none[1]; /* no bitmap: every record has a value */
  static const void* buffers[kColumns][2] = {{NULL, kDrug1}, {NULL, kDrug2}};
  static struct ArrowArray drugs[kColumns];
  static struct ArrowArray* columns[kColumns] = {&drugs[0], &drugs[1]};
  int* batches = stream->private_data;
  memset(out, 0, sizeof *out); /* without release: the end */
  if ((*batches)-- == 0) return 0;
  for (int i = 0; i < kColumns; ++i) {
    drugs[i] = (struct ArrowArray){.length = kRecords, .n_buffers = 2, .buffers = buffers[i]};
  }
  *out = (struct ArrowArray){.length = kRecords,
                             .n_buffers = 1,
                             .buffers = none,
                             .n_children = kColumns,
                             .children = columns,
                             .release = ReleaseArray};
  return 0;
}

static const char* GetLastError(struct ArrowArrayStream* stream) {
  (void)stream;
  return NULL;
}

int main(void) {
  int batches = 1;
  struct ArrowArrayStream stream = {GetSchema, GetNext, GetLastError, ReleaseStream, &batches};
  const char* json = NULL;
  NparAnalysis* analysis = NULL;
  uint32_t code = npar_analysis_create(&analysis);
  if (code == NPAR_A_OK) code = npar_analysis_set(analysis, "related", "drug1");
  if (code == NPAR_A_OK) code = npar_analysis_set(analysis, "related", "drug2");
  if (code == NPAR_A_OK) code = npar_analysis_set(analysis, "test", "sign");
  if (code == NPAR_A_OK) code = npar_analysis_read_stream(analysis, &stream);
  if (code == NPAR_A_OK) code = npar_analysis_run(analysis, NULL, NULL);
  if (code == NPAR_A_OK) code = npar_analysis_result(analysis, "json", &json, NULL);
  if (code == NPAR_A_OK) {
    /* A program has a reader of JSON for it. */
    const char* p = strstr(json, "\"exactSig2Tailed\"");
    if (p != NULL) printf("%.*s\n", (int)strcspn(p, ",\n"), p);
  } else {
    fprintf(stderr, "%s\n", npar_analysis_error(analysis));
  }
  npar_analysis_destroy(analysis);
  return code == NPAR_A_OK ? 0 : 1;
}
