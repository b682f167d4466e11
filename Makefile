# The two commands a new user needs: `make run` and `make test`. Both install what is
# missing first (Debian 12), then build.
BUILD      ?= build
ASAN_BUILD ?= build-asan
COV_BUILD  ?= build-cov
JOBS       ?= $(shell nproc)
CMAKE_ARGS ?=

.PHONY: all deps build run test test-fast test-asan coverage bench fuzz format clean

all: build

deps:
	@scripts/install-deps

$(BUILD)/build.ninja:
	cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo $(CMAKE_ARGS)

build: deps $(BUILD)/build.ninja
	cmake --build $(BUILD) -j $(JOBS)

run: build
	@scripts/run-player $(BUILD)/cantovel

# Every test, then every test again built with AddressSanitizer and UBSan.
test: build
	scripts/run-tests $(BUILD)
	$(MAKE) --no-print-directory test-asan

test-fast: build
	scripts/run-tests $(BUILD)

# The sanitizer build is clang's, and doubles as the fuzz build: its tests include a short
# run of every fuzz target.
$(ASAN_BUILD)/build.ninja:
	CC=clang CXX=clang++ cmake -S . -B $(ASAN_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Debug \
	  -DCANTOVEL_SANITIZE=ON -DCANTOVEL_FUZZ=ON -DCANTOVEL_BENCH=OFF $(CMAKE_ARGS)

test-asan: deps $(ASAN_BUILD)/build.ninja
	cmake --build $(ASAN_BUILD) -j $(JOBS)
	scripts/run-tests $(ASAN_BUILD)

# Line and function coverage of src/ by every test, walkthrough included (clang's
# source-based coverage; the report is also left in $(COV_BUILD)/coverage.txt).
$(COV_BUILD)/build.ninja:
	CC=clang CXX=clang++ cmake -S . -B $(COV_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Debug \
	  -DCANTOVEL_COVERAGE=ON -DCANTOVEL_BENCH=OFF $(CMAKE_ARGS)

coverage: deps $(COV_BUILD)/build.ninja
	cmake --build $(COV_BUILD) -j $(JOBS)
	scripts/coverage $(COV_BUILD)

bench: build
	@bench/run-all $(BUILD)

# Every fuzz target for FUZZ_SECONDS (default ten minutes) each.
FUZZ_SECONDS ?= 600
fuzz: deps $(ASAN_BUILD)/build.ninja
	cmake --build $(ASAN_BUILD) -j $(JOBS)
	scripts/run-fuzz $(ASAN_BUILD) $(FUZZ_SECONDS)

format:
	@git ls-files '*.cpp' '*.h' | xargs clang-format -i

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(COV_BUILD)
