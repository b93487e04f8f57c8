#ifndef KORVANE_ENGINE_ABI_H
#define KORVANE_ENGINE_ABI_H
/*
 * The binary interface between Brinecast and a thermodynamic (PVT) engine library.
 *
 * Brinecast never links against an engine. When a brine is given per litre of solution and no
 * density is known, it loads an engine library at run time from the directory named in
 * `Input::dllPath`, trying the file names "kvpvt64.dll", "KVBJ01.dll" and "KVKOG.dll" in that
 * order (on Linux the file is an ordinary ELF shared object that keeps this name), and reaches
 * the entry points below by their names. An engine is a shared library that exports these nine
 * C functions; it may be written in any language that can export them.
 *
 * Loading: the library is opened with every import resolved at once (a missing import fails the
 * load) and kept private to Brinecast (RTLD_LOCAL). Whatever the library's start-up code does to
 * the floating-point exception traps is undone by Brinecast after the load. The library stays
 * loaded for the life of the process.
 *
 * Units, everywhere: temperature in K, pressure in Pa (absolute), amounts of substance in mol,
 * volume in m3.
 *
 * Error reporting: every entry point but kvpvt_context_destroy takes `errorCount` and
 * `errorCodes`. The caller passes an array of KVPVT_ERROR_CAPACITY codes; the engine sets
 * *errorCount to the number of codes it reports (0 to KVPVT_ERROR_CAPACITY) and writes them to
 * the first *errorCount elements. Codes below KVPVT_FIRST_ERROR_CODE (201), negative ones
 * included, are informational: warnings such as "answered with a substitute value". A code of
 * KVPVT_FIRST_ERROR_CODE or more is an error: the call has failed and its outputs are not to be
 * used. Brinecast turns an error into an exception that names the operation that failed and
 * carries every code the engine reported. The meaning of each code is the engine's own.
 * No entry point may let a C++ exception or a longjmp escape.
 *
 * Ownership: a context is created by the engine and released by kvpvt_context_destroy, called
 * exactly once per created context (also after a failure). Strings and arrays passed in belong
 * to the caller and are only valid during the call; an engine copies what it keeps. Output
 * pointers are never null.
 *
 * Thread safety: one context holds everything of one calculation (its components, parameter
 * sets, models, phases and last evaluation). An engine keeps no mutable state outside its
 * contexts, so different contexts may be used from different threads at the same time; one
 * context is used by one thread at a time.
 *
 * Components and phases are found by name. kvpvt_load_component hands back the index of the
 * component within its context (0, 1, 2, ... in order of first loading; loading a name again
 * gives its first index), and every amount array is ordered by that index, never by the order
 * in which the caller happens to hold its components.
 *
 * The order of a calculation, one context per mixture:
 *   1. kvpvt_context_create
 *   2. kvpvt_load_component for every component ("WATER", then salts such as "NaCl")
 *   3. kvpvt_add_bip_set "LBIP1", "LBIP2", "LBIP3" (binary interaction parameter sets)
 *   4. kvpvt_add_model "MCPA" (the equation of state)
 *   5. kvpvt_load_salt_density_model "MSALTDEN" (the volume contribution of dissolved salts)
 *   6. kvpvt_add_phase "water", with the index of the "WATER" component as its solvent
 *   7. kvpvt_evaluate at a temperature, pressure and amounts
 *   8. kvpvt_phase_volume of the phase added in step 6
 *   9. kvpvt_context_destroy
 * An engine refuses, with an error code, any name it does not know.
 */

#include <stdint.h>

#define KVPVT_ERROR_CAPACITY 16
#define KVPVT_FIRST_ERROR_CODE 201

/* Entry-point names, as Brinecast asks the loaded library for them. */
#define KVPVT_CONTEXT_CREATE_NAME "kvpvt_context_create"
#define KVPVT_CONTEXT_DESTROY_NAME "kvpvt_context_destroy"
#define KVPVT_LOAD_COMPONENT_NAME "kvpvt_load_component"
#define KVPVT_ADD_BIP_SET_NAME "kvpvt_add_bip_set"
#define KVPVT_ADD_MODEL_NAME "kvpvt_add_model"
#define KVPVT_LOAD_SALT_DENSITY_MODEL_NAME "kvpvt_load_salt_density_model"
#define KVPVT_ADD_PHASE_NAME "kvpvt_add_phase"
#define KVPVT_EVALUATE_NAME "kvpvt_evaluate"
#define KVPVT_PHASE_VOLUME_NAME "kvpvt_phase_volume"

#if defined(_WIN32)
#define KVPVT_ENGINE_EXPORT __declspec(dllexport)
#else
#define KVPVT_ENGINE_EXPORT __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** The engine's state for one calculation; opaque to Brinecast. */
typedef struct KvpvtContext KvpvtContext;

/** A new, empty context; null (with an error code) when none can be made. */
KVPVT_ENGINE_EXPORT KvpvtContext* kvpvt_context_create(int32_t* errorCount, int32_t* errorCodes);

/** Releases `context` and everything in it; null is ignored. */
KVPVT_ENGINE_EXPORT void kvpvt_context_destroy(KvpvtContext* context);

/** Adds the component `name` ("WATER", "NaCl") and writes its index to *componentIndex. */
KVPVT_ENGINE_EXPORT void kvpvt_load_component(KvpvtContext* context, const char* name,
                                              int32_t* componentIndex, int32_t* errorCount,
                                              int32_t* errorCodes);

/** Adds the binary interaction parameter set `name` ("LBIP1", "LBIP2", "LBIP3"). */
KVPVT_ENGINE_EXPORT void kvpvt_add_bip_set(KvpvtContext* context, const char* name,
                                           int32_t* errorCount, int32_t* errorCodes);

/** Adds the thermodynamic model `name` ("MCPA"). */
KVPVT_ENGINE_EXPORT void kvpvt_add_model(KvpvtContext* context, const char* name,
                                         int32_t* errorCount, int32_t* errorCodes);

/** Loads the salt density model `name` ("MSALTDEN"). */
KVPVT_ENGINE_EXPORT void kvpvt_load_salt_density_model(KvpvtContext* context, const char* name,
                                                       int32_t* errorCount, int32_t* errorCodes);

/** Adds the phase `name` ("water") whose solvent is the component `solventIndex`; writes the
 *  phase's index to *phaseIndex. */
KVPVT_ENGINE_EXPORT void kvpvt_add_phase(KvpvtContext* context, const char* name,
                                         int32_t solventIndex, int32_t* phaseIndex,
                                         int32_t* errorCount, int32_t* errorCodes);

/** Evaluates the context's models at `temperature` (K) and `pressure` (Pa) for `amountCount`
 *  amounts in mol, amounts[i] being the amount of component i; amountCount equals the number
 *  of components loaded. */
KVPVT_ENGINE_EXPORT void kvpvt_evaluate(KvpvtContext* context, double temperature,
                                        double pressure, const double* amounts,
                                        int32_t amountCount, int32_t* errorCount,
                                        int32_t* errorCodes);

/** Writes the volume in m3 of the phase `phaseIndex`, as of the last successful evaluation. */
KVPVT_ENGINE_EXPORT void kvpvt_phase_volume(KvpvtContext* context, int32_t phaseIndex,
                                            double* volume, int32_t* errorCount,
                                            int32_t* errorCodes);

#ifdef __cplusplus
}
#endif

#endif /* KORVANE_ENGINE_ABI_H */
