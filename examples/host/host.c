/* The smallest host: hands npar a parameter document, a data model and records from an array, and
 * prints the result document.
 *
 *     cc -std=c11 -I include examples/host/host.c -o example_host -ldl
 *     ./example_host build/release/lib/libnpar.so
 *
 * The data: hours of sleep that ten patients gained with each of two drugs. Cushny and Peebles
 * (1905), The action of optical isomers II: hyoscines, Journal of Physiology 32, 501-510. The sign
 * test asks whether the second drug gives more sleep than the first.
 */
#include <dlfcn.h>
#include <npar/component.h>
#include <stdio.h>
#include <string.h>

enum { kFields = 2, kRecords = 10 };

static const double kSleep[kRecords][kFields] = {
    {0.7, 1.9}, {-1.6, 0.8}, {-0.2, 1.1}, {-1.2, 0.1}, {-0.1, -0.1},
    {3.4, 4.4}, {3.7, 5.5},  {0.8, 1.6},  {0.0, 4.6},  {2.0, 3.4}};

/* documents: what shall be tested, and what the columns of a record are. The counts describe the
 * records that reach the run; a host that drops or weighs records fills all five of them in. */
static const char kParameters[] =
    "<Parameters>"
    "<Parameter name='relatedVariables'><ListValue>"
    "<Value value='drug1'/><Value value='drug2'/></ListValue></Parameter>"
    "<Parameter name='isAutomaticallyRelated' value='false'/>"
    "<Parameter name='RSign'><StructuredValue>"
    "<Attribute name='isSelected' value='true'/></StructuredValue></Parameter>"
    "</Parameters>";
static const char kDataModel[] =
    "<DataModel recordCount='10' weightedCount='10' droppedCount='0' badWeightCount='0'"
    " weightedDroppedCount='0'>"
    "<Field name='drug1' label='Hyoscyamine' measure='continuous'/>"
    "<Field name='drug2' label='Hyoscine' measure='continuous'/>"
    "</DataModel>";
/* end documents */

/* objects: a struct of ours begins with the interface's struct, so that one pointer is both. */
typedef struct Document {
  HBXML base;
  const char* text;
} Document;

static uint32_t GetText(HBXML* self, const char** text, size_t* length, int32_t* err) {
  (void)err;
  *text = ((Document*)self)->text;
  *length = strlen(*text);
  return HB_OK;
}

/* These documents live as long as the program: release is optional and left out. */
static const HBXMLTable kDocumentTable = {sizeof(HBXMLTable), GetText, NULL};
static Document parameters = {{&kDocumentTable}, kParameters};
static Document dataModel = {{&kDocumentTable}, kDataModel};
/* end objects */

/* records: the iterator stands before the first record after rewind; next moves it on. */
typedef struct Records {
  HBIterator base;
  int position;
} Records;

static uint32_t Rewind(HBIterator* self, int32_t* err) {
  (void)err;
  ((Records*)self)->position = -1;
  return HB_OK;
}

static uint32_t Next(HBIterator* self, int32_t* err) {
  (void)err;
  return ++((Records*)self)->position < kRecords ? HB_OK : HB_END_OF_RECORDS;
}

static uint32_t GetValue(HBIterator* self, size_t fieldIndex, const void** value, size_t* valueSize,
                         int32_t* err) {
  (void)err;
  *value = &kSleep[((Records*)self)->position][fieldIndex];
  *valueSize = sizeof(double);
  return HB_OK;
}

/* A host with many records also fills in readBlock, which costs one call for a few thousand. */
static const HBIteratorTable kRecordsTable = {sizeof(HBIteratorTable), Rewind, Next, GetValue,
                                              NULL};
static Records records = {{&kRecordsTable}, -1};
/* end records */

/* container: the component puts one stream, the result document, and closes the container. */
static uint32_t PutStream(HBContainerFile* self, HBContainerStreamKey* key, const char* metadata,
                          size_t metadataLength, const char* bytes, size_t length, int32_t* err) {
  (void)self, (void)key, (void)metadata, (void)metadataLength, (void)err;
  return fwrite(bytes, 1, length, stdout) == length ? HB_OK : HB_FAILED;
}

static uint32_t Close(HBContainerFile* self, int32_t* err) {
  (void)self, (void)err;
  return fflush(stdout) == 0 ? HB_OK : HB_FAILED;
}

static const HBContainerFileTable kContainerTable = {sizeof(HBContainerFileTable), PutStream,
                                                     Close};
static HBContainerFile container = {&kContainerTable};
/* end container */

/* context: what one component gets from its host. */
static uint32_t GetParameters(HBContext* self, HBXML** document, int32_t* err) {
  (void)self, (void)err;
  *document = &parameters.base;
  return HB_OK;
}

static uint32_t GetDataModel(HBContext* self, uint32_t input, HBXML** document, int32_t* err) {
  (void)self, (void)input, (void)err;
  *document = &dataModel.base;
  return HB_OK;
}

static uint32_t GetInputIterator(HBContext* self, uint32_t input, HBIterator** iterator,
                                 int32_t* err) {
  (void)self, (void)input, (void)err;
  *iterator = &records.base;
  return HB_OK;
}

static uint32_t SetCodes(HBContext* self, const int32_t* codes, size_t count, int32_t* err) {
  (void)self, (void)codes, (void)count, (void)err;
  return HB_OK;
}

static uint32_t NewIdentifier(HBContext* self, int64_t* identifier, int32_t* err) {
  static int64_t last = 0;
  (void)self, (void)err;
  *identifier = ++last;
  return HB_OK;
}

static uint32_t GetOutputContainer(HBContext* self, const char* key, size_t count,
                                   HBContainerFile** file, int32_t* err) {
  (void)self, (void)key, (void)count, (void)err;
  *file = &container;
  return HB_OK;
}

static const HBContextTable kContextTable = {sizeof(HBContextTable), GetParameters, GetDataModel,
                                             GetInputIterator,       SetCodes,      NewIdentifier,
                                             GetOutputContainer,     NULL};
static HBContext context = {&kContextTable};

static uint32_t GetInformation(HBHost* self, HBHostInformation* information, int32_t* err) {
  (void)self, (void)err;
  *information = (HBHostInformation){.name = "Example host", .version = "1.0"};
  return HB_OK;
}

static const HBHostTable kHostTable = {sizeof(HBHostTable), GetInformation};
static HBHost host = {&kHostTable};
/* end context */

/* messages: a text comes in two steps, first its size, then the text. */
static void PrintMessages(void* library, void* component) {
  char text[4096];
  size_t needed = 0;
  int32_t err = 0;
  uint32_t (*getMessages)(void*, char*, size_t, size_t*, int32_t*);
  *(void**)&getMessages = dlsym(library, "hb_component_getMessages");
  if (getMessages(component, text, sizeof text, &needed, &err) == HB_OK) {
    fprintf(stderr, "%s", text);
  } else {
    fprintf(stderr, "%zu bytes of messages\n", needed);
  }
}
/* end messages */

int main(int argc, char** argv) {
  /* run: the calls in their order; any result but HB_OK ends the road. */
  void* library = dlopen(argc > 1 ? argv[1] : "libnpar.so", RTLD_NOW);
  if (library == NULL) {
    fprintf(stderr, "%s\n", dlerror());
    return 2;
  }
  uint32_t (*initialise)(HBHost*);
  uint32_t (*create)(HBContext*, void*, void**, int32_t*);
  uint32_t (*configure)(void*, int32_t*);
  uint32_t (*begin)(void*, HBProgress*, int32_t*);
  uint32_t (*end)(void*, int32_t*);
  uint32_t (*destroy)(void*);
  *(void**)&initialise = dlsym(library, "hb_initialise");
  *(void**)&create = dlsym(library, "hb_create_component");
  *(void**)&configure = dlsym(library, "hb_component_configure");
  *(void**)&begin = dlsym(library, "hb_component_beginExecution");
  *(void**)&end = dlsym(library, "hb_component_endExecution");
  *(void**)&destroy = dlsym(library, "hb_destroy_component");

  int32_t err = 0;
  void* component = NULL;
  initialise(&host);
  if (create(&context, NULL, &component, &err) != HB_OK) {
    fprintf(stderr, "no component: %d\n", (int)err);
    return 1;
  }
  uint32_t result = configure(component, &err);
  if (result == HB_OK) result = begin(component, NULL, &err);
  if (result != HB_OK) PrintMessages(library, component);
  end(component, &err); /* frees what the run needed: destroy alone would not */
  destroy(component);
  /* end run */
  return result == HB_OK ? 0 : 1;
}
