#!/bin/sh
echo "hello from an installed file"
