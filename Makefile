# Entry points. Each target installs what it needs when it is missing.
BUILD ?= build
JOBS ?= $(shell nproc)
PYTHON := /usr/bin/python3
HOST := $(BUILD)/host

.PHONY: all deps configure build test test-unit test-python test-leaks test-sanitize test-threads test-windows demo bench clean

all: build

deps:
	@bash scripts/install-deps.sh

$(BUILD)/CMakeCache.txt:
	cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo

configure: deps $(BUILD)/CMakeCache.txt

build: configure
	cmake --build $(BUILD) -j $(JOBS)

test-unit: build
	ctest --test-dir $(BUILD) --output-on-failure -j $(JOBS)

test-python: build
	cd tests/python && PYCLIPGRADE_BUILD=$(abspath $(BUILD)) $(PYTHON) -m pytest -q -p no:cacheprovider .

test-leaks: build
	bash scripts/test-leaks.sh $(BUILD)

# The Python-free core and its tests under AddressSanitizer and
# UndefinedBehaviorSanitizer.
test-sanitize: deps
	cmake -S . -B $(BUILD)-asan -DCMAKE_BUILD_TYPE=Debug -DPCG_WITH_PYTHON=OFF -DPCG_SANITIZE=address,undefined
	cmake --build $(BUILD)-asan -j $(JOBS)
	UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 ctest --test-dir $(BUILD)-asan --output-on-failure -j $(JOBS)

# The code with threads and locks (platform primitives, the log, the
# reference agent's writer lock, journal and event producer, the event ring,
# the mask loops sliced over threads) under ThreadSanitizer.
THREAD_TESTS := platform_test runtime_test reference_test selection_test events_core_test
test-threads: deps
	cmake -S . -B $(BUILD)-tsan -DCMAKE_BUILD_TYPE=Debug -DPCG_WITH_PYTHON=OFF -DPCG_SANITIZE=thread
	cmake --build $(BUILD)-tsan -j $(JOBS) --target $(THREAD_TESTS) pcg_ref_agent pcg_ref_iomp
	TSAN_OPTIONS=halt_on_error=1 ctest --test-dir $(BUILD)-tsan --output-on-failure -R '^($(subst $(eval) ,|,$(THREAD_TESTS)))$$'

test-windows: deps
	bash scripts/test-windows.sh

test: test-unit test-python test-leaks test-sanitize test-threads test-windows

demo: build
	PYTHONPATH=$(abspath $(HOST)) $(PYTHON) examples/demo.py

bench: deps
	cmake -S . -B $(BUILD)-bench -DCMAKE_BUILD_TYPE=Release -DPCG_WITH_BENCH=ON -DPCG_WITH_TESTS=OFF
	cmake --build $(BUILD)-bench -j $(JOBS) --target selection_bench
	$(MAKE) build
	PCG_BENCH_HOST=$(abspath $(HOST)) bash bench/run.sh $(BUILD)-bench
	$(PYTHON) bench/events_bench.py $(abspath $(HOST))

clean:
	rm -rf $(BUILD) $(BUILD)-*
