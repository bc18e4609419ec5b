# Thin wrapper around CMake; see README.md.
BUILD ?= build
JOBS ?= $(shell nproc)

ASAN_BUILD ?= build-asan
# Leak reports from libraries we do not build are suppressed there, each with its reason.
SANITIZER_ENV = ASAN_OPTIONS=detect_leaks=1:abort_on_error=0:detect_stack_use_after_return=0 \
	LSAN_OPTIONS=suppressions=$(CURDIR)/scripts/sanitizers/lsan.supp:print_suppressions=0 \
	UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1

.PHONY: all deps configure build run test test-asan test-debian13 bench soak install deb clean

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

# The whole suite built with AddressSanitizer and UndefinedBehaviorSanitizer, in its own folder;
# -O1 and line tables only, which build much faster and still name file and line in every report.
test-asan: deps
	@cmake -S . -B $(ASAN_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DQUELLTON_SANITIZE=ON \
		"-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O1 -g1 -DNDEBUG" >/dev/null
	@cmake --build $(ASAN_BUILD) -j $(JOBS)
	$(SANITIZER_ENV) ctest --test-dir $(ASAN_BUILD) --output-on-failure -j $(JOBS) --timeout 1800 $(ASAN_CTEST_ARGS)

# Debian 13 (Qt 6.8, GCC 14, its desktops) in a debootstrap root of its own, as root; see README.md.
test-debian13:
	scripts/test-debian13.sh

# The soak runs for ten minutes and more; see README.md.
bench: build
	@for b in $(BUILD)/bench/bench_*; do case $$b in *soak*) continue;; esac; echo "== $$b"; $$b; done

soak: build
	$(BUILD)/bench/bench_soak $(SOAK_ARGS)

# PREFIX (default /usr/local) and DESTDIR choose where; below /usr it needs root.
install: build
	cmake --install $(BUILD) $(if $(PREFIX),--prefix $(PREFIX))

deb: build
	@cd $(BUILD) && cpack -G DEB >/dev/null
	@ls $(BUILD)/quellton_*.deb

clean:
	rm -rf $(BUILD) $(ASAN_BUILD)
