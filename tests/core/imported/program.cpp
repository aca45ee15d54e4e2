int answer();

int main() { return answer() == 42 ? 0 : 1; }
