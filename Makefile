# The two commands README.md starts with: `make run` and `make test`.
BUILD    ?= build
ASAN     ?= build-asan
WERROR   ?= OFF
JOBS     ?= $(shell nproc 2>/dev/null || echo 2)
# A per-litre analysis without density: the report's density comes from the reference engine.
EXAMPLE  ?= examples/north-sea-formation-water.json
PREFIX   ?= /usr/local
MAKEFLAGS += --no-print-directory

.PHONY: deps configure build build-program run test sanitize bench install clean

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

install: build
	@cmake --install $(BUILD) --prefix $(PREFIX)

bench: build
	@$(BUILD)/bench/brinecast_bench

clean:
	rm -rf $(BUILD) $(ASAN)
