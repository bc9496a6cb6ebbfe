#!/usr/bin/env python3
"""Makes the responses of this example, the same ones every time, and the truth behind them."""
import math
import random

random.seed(20261122)
OWN_A = [-1.6, -1.1, -0.7, -0.3, 0.1, 0.4, 0.9, 1.3]
COMMON = [-0.9, -0.2, 0.5, 1.2]
OWN_B = [-0.8, -0.4, 0.0, 0.6, 0.8, 1.1, 1.6, 2.2]


def answers(ability, difficulties):
    return "".join(
        "1" if random.random() < 1 / (1 + math.exp(d - ability)) else "0" for d in difficulties
    )


with open("form-a.txt", "w") as form:  # number, 4 own, 2 common, 4 own, 2 common items
    for student in range(1001, 1401):
        order = OWN_A[:4] + COMMON[:2] + OWN_A[4:] + COMMON[2:]
        form.write(f"{student} {answers(random.gauss(-0.2, 1), order)}\n")

with open("form-b.txt", "w") as form:  # class and number; on the next line 4 common, 8 own items
    for student in range(2001, 2401):
        form.write(f"class {'KLM'[student % 3]} no. {student}\n")
        form.write(f"{answers(random.gauss(0.8, 1), COMMON + OWN_B)}\n")

with open("truth.csv", "w") as truth:
    truth.write("item,difficulty\n")
    for letter, items in (("A", OWN_A), ("Common", COMMON), ("B", OWN_B)):
        for i, difficulty in enumerate(items, 1):
            truth.write(f"{letter} {i},{difficulty}\n")
