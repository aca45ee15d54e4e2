extern "C" int stubAnswer();

int answer() { return stubAnswer(); }
