# The two commands README.md starts with: `make run` and `make test`.
BUILD    ?= build
ASAN     ?= build-asan
TSAN     ?= build-tsan
FUZZ     ?= build-fuzz
# Seconds each fuzz target runs in `make fuzz`.
FUZZ_SECONDS ?= 30
WERROR   ?= OFF
JOBS     ?= $(shell nproc 2>/dev/null || echo 2)
# A per-litre analysis without density: the report's density comes from the reference engine.
EXAMPLE  ?= examples/north-sea-formation-water.json
PREFIX   ?= /usr/local
# The Windows cross build and the Wine prefix its tests run in.
WINBUILD ?= build-windows
MAKEFLAGS += --no-print-directory

.PHONY: deps configure build build-program run test sanitize tsan fuzz bench install clean windows test-windows

deps:
	@scripts/install-deps.sh

configure: deps
	@cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=Release -DBRINECAST_WERROR=$(WERROR) >/dev/null

build: configure
	@cmake --build $(BUILD) -j $(JOBS)

# Only what the report needs: the program, the library it links and the reference engine that
# gives the density of a per-litre analysis. Tests and benchmarks wait for `make test`.
build-program: configure
	@cmake --build $(BUILD) -j $(JOBS) --target brinecast_program brinecast_reference_engine

run: build-program
	@if [ -x $(BUILD)/apps/brinecast/brinecast ]; then \
	  $(BUILD)/apps/brinecast/brinecast speciate $(EXAMPLE); \
	else \
	  echo "Library built in $(BUILD); the command-line program is not part of this build yet."; \
	fi

test: build
	@ctest --test-dir $(BUILD) --output-on-failure -j $(JOBS)

# AddressSanitizer + UndefinedBehaviorSanitizer build of everything, then every test.
sanitize: deps
	@cmake -S . -B $(ASAN) -DCMAKE_BUILD_TYPE=Debug -DBRINECAST_SANITIZE=ON -DBRINECAST_WERROR=$(WERROR) >/dev/null
	@cmake --build $(ASAN) -j $(JOBS)
	@ctest --test-dir $(ASAN) --output-on-failure -j $(JOBS)

# ThreadSanitizer build of the concurrency tests only: Speciator batches, the engine bridge's
# concurrent first load, and host threads racing on the process-wide engine.
tsan: deps
	@cmake -S . -B $(TSAN) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DBRINECAST_THREAD_CHECKS=ON \
	  -DBRINECAST_BUILD_APPS=OFF -DBRINECAST_BUILD_BENCH=OFF -DBRINECAST_WERROR=$(WERROR) \
	  -DCMAKE_CXX_FLAGS=-fsanitize=thread -DCMAKE_EXE_LINKER_FLAGS=-fsanitize=thread \
	  -DCMAKE_SHARED_LINKER_FLAGS=-fsanitize=thread >/dev/null
	@cmake --build $(TSAN) -j $(JOBS) --target thread_checks
	@TSAN_OPTIONS="halt_on_error=1 second_deadlock_stack=1" ctest --test-dir $(TSAN) -L threads --output-on-failure -j $(JOBS)

# libFuzzer targets built with clang under AddressSanitizer and UndefinedBehaviorSanitizer, each
# run for FUZZ_SECONDS from its seed corpus in fuzz/corpus/.
fuzz:
	@scripts/install-deps.sh fuzz
	@cmake -S fuzz -B $(FUZZ) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++-14 \
	  -DBRINECAST_WERROR=$(WERROR) >/dev/null
	@cmake --build $(FUZZ) -j $(JOBS) --target fuzz_analysis_json fuzz_analysis_csv fuzz_reaction_data fuzz_speciate
	@fuzz/run-targets $(FUZZ) $(FUZZ_SECONDS)

install: build
	@cmake --install $(BUILD) --prefix $(PREFIX)

bench: build
	@$(BUILD)/bench/brinecast_bench

# Windows: cross-built with MinGW-w64, tested under Wine. One wineserver serves the whole run
# (each Wine process would otherwise start its own, seconds each); the prefix lives in the build.
WINE_ENV = WINEPREFIX=$(CURDIR)/$(WINBUILD)/wineprefix WINEDEBUG=-all

windows:
	@scripts/install-deps.sh windows
	@cmake -S . -B $(WINBUILD) -DCMAKE_TOOLCHAIN_FILE=$(CURDIR)/cmake/toolchains/mingw-w64-x86_64.cmake \
	  -DCMAKE_BUILD_TYPE=Release -DBRINECAST_WERROR=$(WERROR) >/dev/null
	@cmake --build $(WINBUILD) -j $(JOBS)

test-windows: windows
	@$(WINE_ENV) scripts/wine-test-run.sh $(WINBUILD) $(JOBS)

clean:
	rm -rf $(BUILD) $(ASAN) $(TSAN) $(FUZZ) $(WINBUILD)
