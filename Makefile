# Set-up and everyday targets. `make run` builds an optimised engine and starts it at its console;
# `make test` builds and runs every test; `make bench` runs the benchmarks.
BUILD ?= build
SANITIZE_BUILD ?= build-sanitize
JOBS ?= $(shell nproc 2>/dev/null || echo 2)
CMAKE_FLAGS ?= -DCMAKE_BUILD_TYPE=Release

.PHONY: all build run test test-sanitize bench deps clean

all: build

deps:
	@bash .ci/install-deps

build: deps
	@cmake -S . -B $(BUILD) $(CMAKE_FLAGS) >/dev/null
	@cmake --build $(BUILD) -j $(JOBS)

run: build
	@./$(BUILD)/zephrin

test: build
	@cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

test-sanitize: deps
	@cmake -S . -B $(SANITIZE_BUILD) -DCMAKE_BUILD_TYPE=Debug -DZEPHRIN_SANITIZE=ON >/dev/null
	@cmake --build $(SANITIZE_BUILD) -j $(JOBS)
	@cd $(SANITIZE_BUILD) && ctest --output-on-failure -j $(JOBS)

bench: build
	@bash bench/run-benchmarks

clean:
	rm -rf $(BUILD) $(SANITIZE_BUILD)
