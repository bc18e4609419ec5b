# Thin wrapper around CMake; see README.md.
BUILD ?= build
JOBS ?= $(shell nproc)

.PHONY: all deps configure build run test bench clean

all: build

deps:
	@scripts/install-deps.sh

configure: deps
	@cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null

build: configure
	@cmake --build $(BUILD) -j $(JOBS)

run: build
	$(BUILD)/quellton

test: build
	ctest --test-dir $(BUILD) --output-on-failure -j $(JOBS) --timeout 900

bench: build
	@for b in $(BUILD)/bench/bench_*; do echo "== $$b"; $$b; done

clean:
	rm -rf $(BUILD)
