// What the table look-ups and the rewrite cost, each beside its limit.
