extern "C" int stubAnswer() { return 42; }
