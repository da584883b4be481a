# Runs every command on files whose names are not UTF-8: fileNames.sh, in a folder with the inputs of all commands.
# What is written for a file named by the byte 0xFC is what is written for one whose name has the three letters %FC.
set -e
export SOURCE_DATE_EPOCH=1700000000 # pages say when they were made
byte=$(printf '\374')
for name in 'a%FCb' "a${byte}b"; do
    rm -rf run
    mkdir run
    cp -r pass "run/$name"
    cp spatial.bin "run/$name.bin"
    cp scan.bin "run/scan-$name"
    cp shots/calibration-1.bin "run/shot-$name.bin"
    for kind in wheel cone rail; do cp $kind.csv "run/$kind-$name.csv"; done
    mv "run/$name/train_101.bin" "run/$name/${name}_101.bin"
    mv "run/$name/settings.ini" "run/$name/$name.ini"
    (
        cd run
        outputs() { echo "--json j-$1-$name --report r-$1-$name"; }
        "$KXMATH" simulate "$name/new/$name" --cars 1 --rate 500
        "$KXMATH" simulate "$name" --calibration 1
        "$KXMATH" info "$name.bin" "wheel-$name.csv"
        "$KXMATH" convert "$name.bin" "$name.ply"
        "$KXMATH" convert "$name.ply" "$name.xyzf"
        "$KXMATH" convert "wheel-$name.csv" "$name.csv"
        "$KXMATH" wheel "wheel-$name.csv" $(outputs wheel) --csv "c-$name"
        "$KXMATH" profile "wheel-$name.csv" --do trimX:1,90 $(outputs profile) -o "p-$name.ply"
        "$KXMATH" conicity --wheel1 "cone-$name.csv" --wheel2 "cone-$name.csv" --rail1 "rail-$name.csv" \
            --rail2 "rail-$name.csv" --gauge 1442 --back-to-back 1360 --gauge-depth 0 $(outputs conicity)
        for sensor in 1 2; do
            "$KXMATH" calibrate "shot-$name.bin" --position 2 --side larger-y $(outputs calibrate) --write "w-$name.ini" --sensor $sensor
        done
        "$KXMATH" grid "scan-$name" --step 0.5 --out "seeds-$name" $(outputs grid)
        "$KXMATH" train "$name/${name}_101.bin" "$name/train_102.bin" --settings "$name/$name.ini" \
            --defects "$name/defects.ini" --out "passes-$name" --keep all $(outputs train) --csv "c-train-$name"
        "$KXMATH" settings init "new-$name.ini"
        "$KXMATH" settings check "$name/$name.ini" "$name/${name}_101.bin" "$name/train_102.bin" || true
        "$KXMATH" settings fit "$name/${name}_101.bin" "$name/train_102.bin" --distance 1359.6,1360.2,1359.7,1360.0 \
            --write "fit-$name.ini" --report "r-fit-$name" || true
        for arguments in "info gone-$name" "convert $name.bin $name/no/a.ply" "wheel gone-$name" \
            "grid scan-$name --step 1 --out scan-$name" "calibrate gone-$name --position 2 --side larger-y" \
            "convert $name.bin ./$name.bin" "wheel --$name" "$name"; do
            if "$KXMATH" $arguments; then exit 9; else echo "$?: $arguments"; fi
        done
    ) >log 2>&1 || { cat log >&2; exit 8; }
    find run -depth -name "*$byte*" | while read -r path; do
        mv "$path" "$(dirname "$path")/$(basename "$path" | LC_ALL=C sed "s/$byte/%FC/g")"
    done
    LC_ALL=C sed "s/$byte/%FC/g" log >run/log
    mv run "run-${#name}"
done
diff -r run-5 run-3
