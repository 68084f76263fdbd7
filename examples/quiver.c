/* How many quivers a number of leaves needs. */
#include <stdio.h>
#include <stdlib.h>

#define LEAVES_IN_A_QUIVER 25

static unsigned long quivers_for_leaves(unsigned long leaves) {
  return leaves / LEAVES_IN_A_QUIVER + (leaves % LEAVES_IN_A_QUIVER != 0);
}

int main(int count, char **arguments) {
  const unsigned long leaves = count > 1 ? strtoul(arguments[1], NULL, 10) : 0;
  printf("%lu leaves need %lu quivers\n", leaves, quivers_for_leaves(leaves));
  return 0;
}
