# Entry points. Each target installs what it needs when it is missing.
BUILD ?= build
JOBS ?= $(shell nproc)
PYTHON := /usr/bin/python3
HOST := $(BUILD)/host

.PHONY: all deps configure build test test-unit test-python test-leaks test-sanitize test-threads test-windows demo example-selection bench bench-python clean fuzz fuzz-smoke test-python-sanitize fuzz-native fuzz-native-build fuzz-native-smoke

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

# The module and the reference engines under AddressSanitizer and
# UndefinedBehaviorSanitizer, with the whole pytest suite run through them:
# the interpreter itself is not instrumented, so the sanitizer runtime is
# preloaded, and its own allocations are not leak-checked.
PYASAN_ENV = LD_PRELOAD=$$(gcc -print-file-name=libasan.so) \
	ASAN_OPTIONS=detect_leaks=0:halt_on_error=1:abort_on_error=1 \
	UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
test-python-sanitize: deps
	cmake -S . -B $(BUILD)-pyasan -DCMAKE_BUILD_TYPE=Debug -DPCG_WITH_TESTS=OFF -DPCG_SANITIZE=address,undefined
	cmake --build $(BUILD)-pyasan -j $(JOBS)
	cd tests/python && $(PYASAN_ENV) PYCLIPGRADE_BUILD=$(abspath $(BUILD))-pyasan $(PYTHON) -m pytest -q -p no:cacheprovider .

# The code with threads and locks (platform primitives, the log, the
# reference agent's writer lock, journal and event producer, the event ring,
# the mask loops and the renderer's passes sliced over threads, the image
# retouch manager) under ThreadSanitizer.
THREAD_TESTS := platform_test runtime_test reference_test selection_test events_core_test image_retouch_mgr_test \
  renderer_slices_test
test-threads: deps
	cmake -S . -B $(BUILD)-tsan -DCMAKE_BUILD_TYPE=Debug -DPCG_WITH_PYTHON=OFF -DPCG_SANITIZE=thread
	cmake --build $(BUILD)-tsan -j $(JOBS) --target $(THREAD_TESTS) pcg_ref_agent pcg_ref_iomp pcg_ref_retouch
	TSAN_OPTIONS=halt_on_error=1 ctest --test-dir $(BUILD)-tsan --output-on-failure -R '^($(subst $(eval) ,|,$(THREAD_TESTS)))$$'

test-windows: deps
	bash scripts/test-windows.sh

# The hostile-script fuzzer: batches of calls in child interpreters; a crash,
# hang or pending error is saved, cut down, under $(BUILD)/fuzz-findings.
FUZZ_SECONDS ?= 600
FUZZ_SEED ?= 1
fuzz: build
	$(PYTHON) tests/fuzz/fuzz.py --build $(abspath $(BUILD)) --seconds $(FUZZ_SECONDS) --seed $(FUZZ_SEED)

fuzz-smoke: build
	$(PYTHON) tests/fuzz/fuzz.py --build $(abspath $(BUILD)) --seconds 60 --seed 1

# libFuzzer targets of the Python-free parsers and loops, built by clang with
# AddressSanitizer and UndefinedBehaviorSanitizer. fuzz-native runs each for
# FUZZ_NATIVE_SECONDS from its seed corpus; fuzz-native-smoke briefly.
FUZZ_NATIVE_TARGETS := runs_to_mask mask_to_runs settings_text lens_crop record_decoder
FUZZ_NATIVE_SECONDS ?= 300
fuzz-native-build: deps
	CC=clang-14 CXX=clang++-14 cmake -S . -B $(BUILD)-fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo \
	  -DPCG_WITH_PYTHON=OFF -DPCG_WITH_TESTS=OFF -DPCG_WITH_FUZZ=ON \
	  -DPCG_SANITIZE=address,undefined,fuzzer-no-link
	cmake --build $(BUILD)-fuzz -j $(JOBS) $(foreach t,$(FUZZ_NATIVE_TARGETS),--target fuzz_$(t))
fuzz-native: fuzz-native-build
	bash scripts/fuzz-native.sh $(BUILD)-fuzz $(FUZZ_NATIVE_SECONDS) $(FUZZ_NATIVE_TARGETS)
fuzz-native-smoke: fuzz-native-build
	bash scripts/fuzz-native.sh $(BUILD)-fuzz 20 $(FUZZ_NATIVE_TARGETS)

test: test-unit test-python test-leaks test-sanitize test-python-sanitize test-threads test-windows fuzz-smoke fuzz-native-smoke

# Then grades the photograph python3-skimage bundles (installed by deps) and
# writes before.png, after.png and histogram.png into DEMO_OUT.
DEMO_OUT ?= $(abspath $(BUILD))/demo
demo: build
	PYTHONPATH=$(abspath $(HOST)) $(PYTHON) examples/effects.py
	PYTHONPATH=$(abspath $(HOST)):$(abspath $(BUILD))/testing $(PYTHON) examples/grade_photo.py $(DEMO_OUT)

# A smart selection on a photograph, written as an overlay picture.
example-selection: build
	PYTHONPATH=$(abspath $(HOST)):$(abspath $(BUILD))/testing $(PYTHON) examples/smart_selection.py $(abspath $(BUILD))/smart_selection_overlay.png

# The selection members through Python beside the same C++ calls and numpy.
bench-python: build
	$(PYTHON) bench/selection_bench.py --host $(abspath $(HOST)) --testing $(abspath $(BUILD))/testing

bench: deps
	cmake -S . -B $(BUILD)-bench -DCMAKE_BUILD_TYPE=Release -DPCG_WITH_BENCH=ON -DPCG_WITH_TESTS=OFF
	cmake --build $(BUILD)-bench -j $(JOBS) --target selection_bench render_depth_bench
	$(MAKE) build
	PCG_BENCH_HOST=$(abspath $(HOST)) PCG_BENCH_TESTING=$(abspath $(BUILD))/testing bash bench/run.sh $(BUILD)-bench
	$(PYTHON) bench/events_bench.py $(abspath $(HOST))
	$(BUILD)-bench/bench/render_depth_bench
	$(PYTHON) bench/apply_effect_bench.py --host $(abspath $(HOST))

clean:
	rm -rf $(BUILD) $(BUILD)-*
