# The two commands README.md starts with: `make run` and `make test`.
BUILD    ?= build
ASAN     ?= build-asan
WERROR   ?= OFF
JOBS     ?= $(shell nproc 2>/dev/null || echo 2)
# A per-litre analysis without density: the report's density comes from the reference engine.
EXAMPLE  ?= examples/north-sea-formation-water.json
PREFIX   ?= /usr/local
# The Windows cross build and the Wine prefix its tests run in.
WINBUILD ?= build-windows
MAKEFLAGS += --no-print-directory

.PHONY: deps configure build run test sanitize bench install clean windows test-windows

deps:
	@scripts/install-deps.sh

configure: deps
	@cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=Release -DBRINECAST_WERROR=$(WERROR) >/dev/null

build: configure
	@cmake --build $(BUILD) -j $(JOBS)

run: build
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
	rm -rf $(BUILD) $(ASAN) $(WINBUILD)
