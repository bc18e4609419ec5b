# Thin wrapper around CMake; see README.md.
BUILD ?= build
JOBS ?= $(shell nproc)

.PHONY: all deps configure build run test bench install deb clean

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

# PREFIX (default /usr/local) and DESTDIR choose where; below /usr it needs root.
install: build
	cmake --install $(BUILD) $(if $(PREFIX),--prefix $(PREFIX))

deb: build
	@cd $(BUILD) && cpack -G DEB >/dev/null
	@ls $(BUILD)/quellton_*.deb

clean:
	rm -rf $(BUILD)
