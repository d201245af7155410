# Set-up and everyday targets. `make run` builds an optimised engine and starts it at its console;
# `make test` builds and runs every test; `make bench` runs the benchmarks.
BUILD ?= build
SANITIZE_BUILD ?= build-sanitize
COVERAGE_BUILD ?= build-coverage
FUZZ_BUILD ?= build-fuzz
FUZZ_SECONDS ?= 60
FUZZ_TARGETS = commands fen pgn settings bitbases table
JOBS ?= $(shell nproc 2>/dev/null || echo 2)
# The engine is built for the machine that runs it; NATIVE=OFF builds one that runs on any x86-64.
NATIVE ?= ON
CMAKE_FLAGS ?= -DCMAKE_BUILD_TYPE=Release -DZEPHRIN_NATIVE=$(NATIVE)
# With clang and lld installed the engine is built by clang with link-time optimisation, the
# fastest of the builds measured; otherwise by the default compiler. Expanded after `deps` ran.
TOOLCHAIN = $(shell command -v clang++ >/dev/null 2>&1 && command -v ld.lld >/dev/null 2>&1 && \
              echo -DCMAKE_CXX_COMPILER=clang++ -DZEPHRIN_LTO=ON)

.PHONY: all build run test test-sanitize coverage fuzz bench deps clean

all: build

deps:
	@bash .ci/install-deps

build: deps
	@# Twice: when the compiler changes, CMake starts a fresh cache that forgets that run's options.
	@cmake -S . -B $(BUILD) $(CMAKE_FLAGS) $(TOOLCHAIN) >/dev/null 2>&1 || true
	@cmake -S . -B $(BUILD) $(CMAKE_FLAGS) $(TOOLCHAIN) >/dev/null
	@cmake --build $(BUILD) -j $(JOBS)

run: build
	@bash tools/make-bitbases.sh $(BUILD)
	@./$(BUILD)/zephrin

test: build
	@cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

test-sanitize: deps
	@cmake -S . -B $(SANITIZE_BUILD) -DCMAKE_BUILD_TYPE=Debug -DZEPHRIN_SANITIZE=ON >/dev/null
	@cmake --build $(SANITIZE_BUILD) -j $(JOBS)
	@cd $(SANITIZE_BUILD) && ctest --output-on-failure -j $(JOBS)

# Line coverage of src/ by the tests, in an unoptimised build of its own. The xboard match is left
# out: it plays on the clock, and coverage must not depend on the load of the machine.
coverage: deps
	@bash .ci/install-deps gcovr
	@cmake -S . -B $(COVERAGE_BUILD) -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS=--coverage \
	  -DZEPHRIN_MATCH_TEST=OFF $$(command -v ccache >/dev/null && echo -DCMAKE_CXX_COMPILER_LAUNCHER=ccache) >/dev/null
	@cmake --build $(COVERAGE_BUILD) -j $(JOBS)
	@find $(COVERAGE_BUILD) -name '*.gcda' -delete
	@cd $(COVERAGE_BUILD) && ctest --output-on-failure -j $(JOBS) -E xboard_match
	@gcovr -r . --object-directory $(COVERAGE_BUILD) --filter 'src/' --exclude-directories '.*/CMakeFiles/[0-9.]+$$' --print-summary -o $(COVERAGE_BUILD)/coverage.txt

# The libFuzzer targets of tools/fuzz, built with clang and the sanitizers, each run for
# FUZZ_SECONDS from its seed corpus; any crash, hang or sanitizer report fails.
fuzz: deps
	@bash .ci/install-deps clang libclang-rt-14-dev
	@CC=clang CXX=clang++ cmake -S . -B $(FUZZ_BUILD) -DCMAKE_BUILD_TYPE=Debug -DZEPHRIN_FUZZ=ON -DZEPHRIN_TESTS=OFF \
	  $$(command -v ccache >/dev/null && echo -DCMAKE_CXX_COMPILER_LAUNCHER=ccache) >/dev/null
	@cmake --build $(FUZZ_BUILD) -j $(JOBS) --target $(addprefix fuzz_,$(FUZZ_TARGETS))
	@bash tools/fuzz/run.sh $(FUZZ_BUILD) $(FUZZ_SECONDS) $(FUZZ_TARGETS)

bench: build
	@bash bench/run-benchmarks

clean:
	rm -rf $(BUILD) $(SANITIZE_BUILD) $(COVERAGE_BUILD) $(FUZZ_BUILD)
