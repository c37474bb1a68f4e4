// idle_player.cpp: an application that does nothing until it is ended.
#include <unistd.h>

int main() {
    constexpr unsigned longestTestSeconds = 120;
    alarm(longestTestSeconds); // never outlives the test that forgot it
    pause();
}
