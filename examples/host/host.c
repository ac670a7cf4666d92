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

#pragma GCC diagnostic ignored "-Wunused-parameter" /* a host with one of each needs few */

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

/* objects: a struct of ours begins with the interface's struct, so that one pointer is both. */
typedef struct Document {
  HBXML base;
  const char* text;
} Document;

static uint32_t GetText(HBXML* self, const char** text, size_t* length, int32_t* err) {
  *text = ((Document*)self)->text;
  *length = strlen(*text);
  return HB_OK;
}

/* These documents live as long as the program: release is optional and left out. */
static const HBXMLTable kDocumentTable = {sizeof(HBXMLTable), GetText, NULL};
static Document parameters = {{&kDocumentTable}, kParameters};
static Document dataModel = {{&kDocumentTable}, kDataModel};

/* records: the iterator stands before the first record after rewind; next moves it on. */
static int position = -1;

static uint32_t Rewind(HBIterator* self, int32_t* err) {
  position = -1;
  return HB_OK;
}

static uint32_t Next(HBIterator* self, int32_t* err) {
  return ++position < kRecords ? HB_OK : HB_END_OF_RECORDS;
}

static uint32_t GetValue(HBIterator* self, size_t fieldIndex, const void** value, size_t* valueSize,
                         int32_t* err) {
  *value = &kSleep[position][fieldIndex];
  *valueSize = sizeof(double);
  return HB_OK;
}

/* A host with many records also fills in readBlock, which costs one call for a few thousand; one
 * that holds columns fills in getColumn alone. */
static const HBIteratorTable kRecordsTable = {
    .size = sizeof(HBIteratorTable), .rewind = Rewind, .next = Next, .getValue = GetValue};
static HBIterator records = {&kRecordsTable};

/* container: the component puts one stream, the result document, and closes the container. */
static uint32_t PutStream(HBContainerFile* self, HBContainerStreamKey* key, const char* metadata,
                          size_t metadataLength, const char* bytes, size_t length, int32_t* err) {
  return fwrite(bytes, 1, length, stdout) == length ? HB_OK : HB_FAILED;
}

static uint32_t Close(HBContainerFile* self, int32_t* err) {
  return fflush(stdout) == 0 ? HB_OK : HB_FAILED;
}

static const HBContainerFileTable kContainerTable = {sizeof(HBContainerFileTable), PutStream,
                                                     Close};
static HBContainerFile container = {&kContainerTable};

/* messages: each comes at the moment it arises; npar explain CODE prints its text. */
static uint32_t DeliverMessage(HBContext* self, int32_t type, int32_t code,
                               const char* const* texts, size_t count, int32_t* err) {
  fprintf(stderr, "%s %d", type == HB_MESSAGE_ERROR ? "error" : "warning", (int)code);
  for (size_t i = 0; i < count; ++i) fprintf(stderr, " \"%s\"", texts[i]);
  return fputc('\n', stderr) == '\n' ? HB_OK : HB_FAILED;
}

/* context: what one component gets from its host. */
static uint32_t GetParameters(HBContext* self, HBXML** document, int32_t* err) {
  *document = &parameters.base;
  return HB_OK;
}

static uint32_t GetDataModel(HBContext* self, uint32_t input, HBXML** document, int32_t* err) {
  *document = &dataModel.base;
  return HB_OK;
}

static uint32_t GetInputIterator(HBContext* self, uint32_t input, HBIterator** iterator,
                                 int32_t* err) {
  *iterator = &records;
  return HB_OK;
}

static uint32_t GetOutputContainer(HBContext* self, const char* key, size_t count,
                                   HBContainerFile** file, int32_t* err) {
  *file = &container;
  return HB_OK;
}

static const HBContextTable kContextTable = {.size = sizeof(HBContextTable),
                                             .getParameters = GetParameters,
                                             .getDataModel = GetDataModel,
                                             .getInputIterator = GetInputIterator,
                                             .getOutputContainer = GetOutputContainer,
                                             .deliverMessage = DeliverMessage};
static HBContext context = {&kContextTable};

/* host: who we are; the result document says so. */
static uint32_t GetInformation(HBHost* self, HBHostInformation* information, int32_t* err) {
  *information = (HBHostInformation){.name = "Example host", .version = "1.0"};
  return HB_OK;
}

static const HBHostTable kHostTable = {sizeof(HBHostTable), GetInformation};
static HBHost host = {&kHostTable};

static int Complain(void) {
  fprintf(stderr, "%s\n", dlerror());
  return 2;
}

#define FIND(name, ...)                 \
  uint32_t (*name)(__VA_ARGS__) = NULL; \
  if ((*(void**)& name = dlsym(library, "hb_" #name)) == NULL) return Complain()

/* run: the calls in their order; any result but HB_OK ends the road. */
int main(int argc, char** argv) {
  void* library = dlopen(argc > 1 ? argv[1] : "libnpar.so", RTLD_NOW);
  if (library == NULL) return Complain();
  FIND(initialise, HBHost*);
  FIND(create_component, HBContext*, void*, void**, int32_t*);
  FIND(component_configure, void*, int32_t*);
  FIND(component_beginExecution, void*, HBProgress*, int32_t*);
  FIND(component_endExecution, void*, int32_t*);
  FIND(destroy_component, void*);

  int32_t err = 0;
  void* component = NULL;
  uint32_t result = initialise(&host);
  if (result == HB_OK) result = create_component(&context, NULL, &component, &err);
  if (result == HB_OK) result = component_configure(component, &err);
  if (result == HB_OK) result = component_beginExecution(component, NULL, &err);
  if (result != HB_OK) fprintf(stderr, "failed with %u, code %d\n", result, (int)err);
  if (component != NULL) {
    component_endExecution(component, &err); /* frees what destroy alone would not */
    destroy_component(component);
  }
  return result == HB_OK ? 0 : 1;
}
