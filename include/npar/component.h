/* What the component exports: plain C, for C11 and C++ alike. A host loads libnpar.so and looks
 * these names up.
 *
 * Calling order: hb_initialise, then for each component hb_create_component,
 * hb_component_configure, the queries, hb_component_beginExecution, hb_component_getMessages at
 * need, hb_component_endExecution, hb_destroy_component, and hb_cleanup at the end. A component may
 * be configured and executed any number of times.
 *
 * All functions return HB_OK (0) or a code from below; `err` takes a code that says more: of a
 * failure that a message tells, the code of the message. It may be null. A function that fills a
 * buffer sets *needed to the size of the text with its zero byte and, where that is above
 * `capacity`, returns NPAR_BUFFER_TOO_SMALL and leaves the buffer alone.
 *
 * Callbacks: while hb_component_configure, _beginExecution or _endExecution is under way, the same
 * component refuses these three and hb_destroy_component with NPAR_BUSY, whether they come from a
 * function of the host's tables or from another thread. From the host's functions the others may be
 * called, on the thread that they run on. No function throws, whatever the host throws: an
 * exception counts as an answer HB_FAILED with the code 240017.
 *
 * Threads: components on different contexts may be used by different threads at a time. Calls of
 * one component come one after the other, except hb_component_cancelExecution.
 *
 * Tags: [initialised] after hb_initialise, [created], [configured], [executed] after
 * hb_component_beginExecution has returned, [any thread].
 */
#ifndef NPAR_COMPONENT_H
#define NPAR_COMPONENT_H

#include <npar/host_interface.h>

#ifdef __cplusplus
extern "C" {
#endif

#define NPAR_FAILED 1u                /* a run or a creation failed: ask hb_component_getMessages */
#define NPAR_NULL_ARGUMENT 2u         /* null component or host, or no input iterator */
#define NPAR_NO_HELPER 5u             /* a helper object of the platform could not be made */
#define NPAR_NOT_CONFIGURED 6u        /* hb_component_configure failed: ask for the messages */
#define NPAR_NULL_MESSAGE_ARGUMENT 9u /* hb_component_getMessages on a null component */
#define NPAR_BUFFER_TOO_SMALL 13u     /* *needed says how large it must be */
#define NPAR_NO_HOST_HELPER 15u       /* hb_getModuleInformation before hb_initialise */
#define NPAR_BUSY 16u                 /* a call into the component is under way: see Callbacks */

/* Answers of hb_component_getIteratorRequirements. */
#define NPAR_READ_ONCE 1
#define NPAR_READ_REPEATEDLY 2
#define NPAR_STORED_ORDER 0

/* The host of all components of this process; null gives NPAR_NULL_ARGUMENT. */
uint32_t hb_initialise(HBHost* host);
/* Does nothing today; call it once at the end. [initialised] */
uint32_t hb_cleanup(void);

/* Makes a component and stores it in *component. On failure *err is 240001. [initialised] */
uint32_t hb_create_component(HBContext* context, void* reserved, void** component, int32_t* err);
/* Frees the component's storage and runs no destructor: end a run first. NPAR_BUSY while a call of
 * the component is under way. [created] */
uint32_t hb_destroy_component(void* component);

/* Reads the parameter document and the data model and works out the requirements. A cancel that
 * came before it is forgotten. [created] */
uint32_t hb_component_configure(void* component, int32_t* err);
/* The data model of output `index`: this component has no output records. [configured] */
uint32_t hb_component_getDataModel(void* component, int32_t index, char* buffer, size_t capacity,
                                   size_t* needed, int32_t* err);
/* What must be done to the records before a run: missing values, weights, codes. [configured] */
uint32_t hb_component_getExecutionRequirements(void* component, char* buffer, size_t capacity,
                                               size_t* needed, int32_t* err);
/* How often and in which order the input is read: 1 input, NPAR_READ_REPEATEDLY,
 * NPAR_STORED_ORDER. [created] */
uint32_t hb_component_getIteratorRequirements(void* component, int32_t* inputs, int32_t* passes,
                                              int32_t* order, int32_t* err);

/* The whole run, on the caller's thread. `progress` may be null. [configured] */
uint32_t hb_component_beginExecution(void* component, HBProgress* progress, int32_t* err);
/* Asks the run under way to stop or, between hb_component_configure and a run, the one that comes;
 * it then returns NPAR_FAILED with the message code 1. [any thread] */
uint32_t hb_component_cancelExecution(void* component, int32_t* err);
/* Frees what the run needed; the component stays configured. [executed] */
uint32_t hb_component_endExecution(void* component, int32_t* err);

/* Output records: there are none, so HB_END_OF_RECORDS. [executed] */
uint32_t hb_component_nextRecord(void* component, int32_t* err);
uint32_t hb_component_getRecordValue(void* component, size_t index, const void** value,
                                     size_t* size, int32_t* err);

/* The messages since the last configure or execution began, as XML:
 * <Messages><Message type="error" code="220010"><Parameter value="..."/></Message></Messages>.
 * [created] */
uint32_t hb_component_getMessages(void* component, char* buffer, size_t capacity, size_t* needed,
                                  int32_t* err);

/* hb_getModuleInformation is exported under its C++ name and told below. */

#ifdef __cplusplus
} /* extern "C" */

/* Name, provider, version and copyright of the component as XML. [initialised] */
uint32_t hb_getModuleInformation(char* buffer, size_t capacity, size_t* needed, int32_t* err);
#endif

/* The mangled name under which hb_getModuleInformation is found by dlsym; it tells the type that
 * size_t is: unsigned long on Linux, macOS and WebAssembly, unsigned long long on 64-bit Windows.
 */
#ifdef _WIN64
#define NPAR_MODULE_INFORMATION_SYMBOL "_Z23hb_getModuleInformationPcyPyPi"
#else
#define NPAR_MODULE_INFORMATION_SYMBOL "_Z23hb_getModuleInformationPcmPmPi"
#endif

#endif /* NPAR_COMPONENT_H */
